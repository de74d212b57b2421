#include "library/playback/widgets/PlayerTransport.h"

#include "library/playback/MediaPlayer.h"
#include "platform/widgets/NamedButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTimer>

#include <algorithm>

namespace cq {

PlayerTransport::PlayerTransport(MediaPlayer* player, QWidget* parent)
    : QWidget(parent), m_player(player) {
    setObjectName(QStringLiteral("playerTransport"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_cmdPlayPause = NamedButton(QStringLiteral("Play"), QStringLiteral("cmdPlayPause"),
                                 QStringLiteral("Play or pause"), this);
    m_sldPosition = new QSlider(Qt::Horizontal, this);
    m_sldPosition->setObjectName(QStringLiteral("sldPosition"));
    m_sldPosition->setAccessibleName(QStringLiteral("Position"));
    m_sldPosition->setToolTip(QStringLiteral("Play position"));
    m_sldPosition->setPageStep(1000);
    m_sldPosition->setSingleStep(100);
    m_lblTime = new QLabel(timeText(0), this);
    m_lblTime->setObjectName(QStringLiteral("lblPlayTime"));
    layout->addWidget(m_cmdPlayPause);
    layout->addWidget(m_sldPosition, 1);
    layout->addWidget(m_lblTime);

    connect(m_cmdPlayPause, &QPushButton::clicked, this, &PlayerTransport::cmdPlayPause_Click);
    connect(m_sldPosition, &QSlider::sliderReleased, this, &PlayerTransport::seekToBar);
    connect(m_sldPosition, &QSlider::actionTriggered, this, [this](int action) {
        // Keys and clicks on the groove move the bar after this signal; a drag seeks on release.
        if (action != QAbstractSlider::SliderMove)
            QTimer::singleShot(0, this, &PlayerTransport::seekToBar);
    });
    if (m_player) {
        connect(m_player, &MediaPlayer::positionTick, this, &PlayerTransport::showPosition);
        connect(m_player, &MediaPlayer::durationChanged, this, &PlayerTransport::showDuration);
        connect(m_player, &MediaPlayer::playStateChange, this, &PlayerTransport::showState);
        showDuration(m_player->durationMs());
    }
}

QString PlayerTransport::timeText(qint64 ms) {
    const qint64 whole = std::max<qint64>(0, ms) / 1000;
    return QStringLiteral("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QChar(u'0'));
}

void PlayerTransport::cmdPlayPause_Click() {
    if (!m_player)
        return;
    if (m_player->playState() == static_cast<int>(PlayState::Playing))
        m_player->pause();
    else
        m_player->play();
}

void PlayerTransport::seekToBar() {
    if (m_player && m_durationMs > 0)
        m_player->setCurrentPosition(m_sldPosition->value() / 1000.0);
}

void PlayerTransport::showPosition(qint64 ms) {
    if (!m_sldPosition->isSliderDown())
        m_sldPosition->setValue(static_cast<int>(ms));
    m_lblTime->setText(timeText(ms) + QStringLiteral(" / ") + timeText(m_durationMs));
}

void PlayerTransport::showDuration(qint64 ms) {
    m_durationMs = std::max<qint64>(0, ms);
    m_sldPosition->setRange(0, static_cast<int>(m_durationMs));
    m_sldPosition->setEnabled(m_durationMs > 0);
    const qint64 position = m_player ? m_player->mediaPlayer()->position() : 0;
    m_lblTime->setText(timeText(position) + QStringLiteral(" / ") + timeText(m_durationMs));
}

void PlayerTransport::showState(int playState) {
    m_cmdPlayPause->setText(playState == static_cast<int>(PlayState::Playing)
                                ? QStringLiteral("Pause")
                                : QStringLiteral("Play"));
}

} // namespace cq
