#include "take/widgets/MicrophoneMeter.h"

#include "take/LevelMeter.h"
#include "take/widgets/LevelBar.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

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
    // The buttons beside the meter must not move when a warning comes and goes.
    QFont bold = m_warning->font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    m_warning->setFixedWidth(
        std::max(metrics.horizontalAdvance(QString::fromLatin1(kNoSoundWarning)),
                 metrics.horizontalAdvance(QString::fromLatin1(kTooLoudWarning))) +
        metrics.averageCharWidth());
    QSizePolicy keep = m_warning->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    m_warning->setSizePolicy(keep);
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
