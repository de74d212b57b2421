#include "take/widgets/RecordingPanel.h"

#include "platform/widgets/NamedButton.h"
#include "take/RecordingController.h"
#include "take/widgets/MicrophoneMeter.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QToolButton>

namespace cq {

namespace {

enum class Glyph { Record, Stop, Play };

QIcon glyphIcon(Glyph glyph) {
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    switch (glyph) {
    case Glyph::Record:
        p.setBrush(QColor(200, 30, 30));
        p.drawEllipse(QRectF(5, 5, 22, 22));
        break;
    case Glyph::Stop:
        p.setBrush(QColor(40, 40, 40));
        p.drawRect(QRectF(7, 7, 18, 18));
        break;
    case Glyph::Play: {
        QPainterPath path;
        path.moveTo(8, 5);
        path.lineTo(27, 16);
        path.lineTo(8, 27);
        path.closeSubpath();
        p.setBrush(QColor(20, 120, 40));
        p.drawPath(path);
        break;
    }
    }
    return QIcon(pixmap);
}

QToolButton* pictureButton(const QString& name, const QString& caption, const QString& toolTip,
                           Glyph glyph, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setIcon(glyphIcon(glyph));
    button->setIconSize(QSize(28, 28));
    button->setToolTip(toolTip);
    button->setAccessibleName(caption);
    button->setAccessibleDescription(toolTip);
    return button;
}

} // namespace

RecordingPanel::RecordingPanel(RecordingController& controller, const LevelMeter& meter,
                               QWidget* parent)
    : QWidget(parent), m_controller(controller) {
    setObjectName(QStringLiteral("RecordingPanel"));
    m_cmdRecordVoiceEmail = pictureButton(
        QStringLiteral("cmdRecordVoiceEmail"), QStringLiteral("Record"),
        QStringLiteral("Start recording audio and video events. After clicking this button, click "
                       "on videos, music, pictures, text, sound effects, etc while recording. You "
                       "can also record your voice with the microphone. Then hit the Stop button, "
                       "then click Render, then click Email."),
        Glyph::Record, this);
    m_cmdPause = pictureButton(QStringLiteral("cmdPause"), QStringLiteral("Stop"),
                               QStringLiteral("Stop"), Glyph::Stop, this);
    m_cmdPlayVoiceEmail = pictureButton(
        QStringLiteral("cmdPlayVoiceEmail"), QStringLiteral("Replay"),
        QStringLiteral("Replay the live sequence of events of video, pics, etc. that you clicked "
                       "on when making video. This is a rough draft of the video and will have "
                       "delays. The video will play correctly after rendered."),
        Glyph::Play, this);

    m_lblRecording = new QLabel(QStringLiteral("Recording"), this);
    m_lblRecording->setObjectName(QStringLiteral("lblRecording"));
    m_lblRecording->setStyleSheet(QStringLiteral("color: #c81e1e; font-weight: bold;"));
    // Blinking must not make the bar jump: the label keeps its place while hidden.
    QSizePolicy keep = m_lblRecording->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    m_lblRecording->setSizePolicy(keep);
    m_lblRecording->hide();

    m_meter = new MicrophoneMeter(meter, this);

    m_cmdEvents = NamedButton(QStringLiteral("Events"), QStringLiteral("cmdEvents"),
                              QStringLiteral("Video Events"), this);

    m_tmrRecording.setObjectName(QStringLiteral("tmrRecording"));
    m_tmrRecording.setInterval(700);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_cmdRecordVoiceEmail);
    layout->addWidget(m_cmdPause);
    layout->addWidget(m_meter);
    layout->addWidget(m_lblRecording);
    layout->addWidget(m_cmdPlayVoiceEmail);
    layout->addWidget(m_cmdEvents);

    connect(m_cmdRecordVoiceEmail, &QToolButton::clicked, this,
            &RecordingPanel::cmdRecordVoiceEmail_Click);
    connect(m_cmdPause, &QToolButton::clicked, this, &RecordingPanel::cmdPause_Click);
    connect(m_cmdPlayVoiceEmail, &QToolButton::clicked, this,
            &RecordingPanel::cmdPlayVoiceEmail_Click);
    connect(m_cmdEvents, &QPushButton::clicked, this, &RecordingPanel::cmdEvents_Click);
    connect(&m_tmrRecording, &QTimer::timeout, this, &RecordingPanel::tmrRecording_Timer);
    connect(&m_controller, &RecordingController::recordingChanged, this,
            &RecordingPanel::onRecordingChanged);
}

void RecordingPanel::cmdRecordVoiceEmail_Click() {
    m_controller.record();
}

void RecordingPanel::cmdPause_Click() {
    m_controller.stop();
}

void RecordingPanel::cmdPlayVoiceEmail_Click() {
    m_controller.replay();
}

void RecordingPanel::onRecordingChanged(bool recording) {
    m_lblRecording->setVisible(recording);
    if (recording)
        m_tmrRecording.start();
    else
        m_tmrRecording.stop();
}

void RecordingPanel::tmrRecording_Timer() {
    m_lblRecording->setVisible(!m_lblRecording->isVisible());
}

} // namespace cq
