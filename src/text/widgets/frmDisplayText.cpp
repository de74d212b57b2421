#include "text/widgets/frmDisplayText.h"

#include "platform/TextHelpers.h"
#include "text/TextFitting.h"
#include "text/widgets/SpeechVoice.h"
#include "text/widgets/TextDisplaySurface.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace cq {

frmDisplayText::frmDisplayText(QString text, SpeechVoice* voice, QWidget* parent)
    : QDialog(parent, Qt::Window | Qt::FramelessWindowHint), m_text(std::move(text)),
      m_voice(voice) {
    setObjectName(QStringLiteral("frmDisplayText"));
    setWindowTitle(QStringLiteral("Text"));
    setStyleSheet(QStringLiteral("background: black;"));
    m_picDisplay = new TextDisplaySurface(this);
    connect(m_picDisplay, &TextDisplaySurface::clicked, this, &frmDisplayText::picDisplay_Click);

    m_tmrDisplayTime = new QTimer(this);
    m_tmrDisplayTime->setObjectName(QStringLiteral("tmrDisplayTime"));
    m_tmrDisplayTime->setSingleShot(true);
    // A coarse timer may fire up to 5% early, and the text must stay for its whole time.
    m_tmrDisplayTime->setTimerType(Qt::PreciseTimer);
    connect(m_tmrDisplayTime, &QTimer::timeout, this, &frmDisplayText::tmrDisplayTime_Timer);
    m_tmrDelayedSoundTimer = new QTimer(this);
    m_tmrDelayedSoundTimer->setObjectName(QStringLiteral("tmrDelayedSoundTimer"));
    connect(m_tmrDelayedSoundTimer, &QTimer::timeout, m_tmrDelayedSoundTimer, &QTimer::stop);

    QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen();
    if (screen)
        setGeometry(screen->geometry());
    m_picDisplay->setGeometry(0, 0, width(), height());
}

int frmDisplayText::displayMilliseconds() const {
    return m_tmrDisplayTime->interval();
}

void frmDisplayText::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_loaded)
        return;
    m_loaded = true;
    // The window is on screen at its full size before the text is fitted to it; the too-big
    // message must not open from inside the show.
    QTimer::singleShot(0, this, &frmDisplayText::Form_Load);
}

void frmDisplayText::Form_Load() {
    m_picDisplay->setGeometry(0, 0, width(), height());
    if (!Preview()) {
        m_tmrDisplayTime->setInterval(80);
        m_tmrDisplayTime->start();
        return;
    }
    m_tmrDisplayTime->setInterval(DisplayDurationMilliseconds(static_cast<int>(m_text.size())));
    m_tmrDisplayTime->start();
}

bool frmDisplayText::Preview() {
    if (m_picDisplay->Preview(m_text))
        return true;
    ShowMessageTooBig(this);
    return false;
}

void frmDisplayText::picDisplay_Click() {
    if (m_voice)
        m_voice->StopSpeaking();
    m_tmrDisplayTime->stop();
    accept();
}

void frmDisplayText::tmrDisplayTime_Timer() {
    accept();
}

} // namespace cq
