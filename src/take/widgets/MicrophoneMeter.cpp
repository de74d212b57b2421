#include "take/widgets/MicrophoneMeter.h"

#include "take/LevelMeter.h"
#include "take/widgets/LevelBar.h"

#include <QHBoxLayout>
#include <QLabel>

namespace cq {

MicrophoneMeter::MicrophoneMeter(const LevelMeter& meter, QWidget* parent)
    : QWidget(parent), m_meter(meter) {
    setObjectName(QStringLiteral("MicrophoneMeter"));
    m_bar = new LevelBar(this);
    m_bar->setObjectName(QStringLiteral("MicrophoneLevel"));
    const QString tip = QStringLiteral("The microphone's level: the bar is the loudness, the "
                                       "white mark the highest peak of the last second. Speak "
                                       "so that the bar stays in the green and yellow.");
    m_bar->setToolTip(tip);
    m_bar->setAccessibleName(QStringLiteral("Microphone level"));
    m_bar->setAccessibleDescription(tip);

    m_warning = new QLabel(this);
    m_warning->setObjectName(QStringLiteral("lblMicrophoneWarning"));
    m_warning->setStyleSheet(QStringLiteral("color: #c81e1e; font-weight: bold;"));
    m_warning->hide();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_bar);
    layout->addWidget(m_warning);

    m_refresh.setInterval(kRefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, &MicrophoneMeter::refresh);
    m_refresh.start();
}

void MicrophoneMeter::refresh() {
    m_bar->setLevel(m_meter.level());
    QString text;
    switch (m_meter.warning()) {
    case LevelWarning::None:
        break;
    case LevelWarning::NoSound:
        text = QString::fromLatin1(kNoSoundWarning);
        break;
    case LevelWarning::TooLoud:
        text = QString::fromLatin1(kTooLoudWarning);
        break;
    }
    if (text != m_warning->text())
        m_warning->setText(text);
    m_warning->setVisible(!text.isEmpty());
}

} // namespace cq
