#include "library/playback/widgets/PlayerControls.h"

#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/VolumeSlider.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPushButton>

namespace cq {

PlayerControls::PlayerControls(int index, MediaPlayer* player, QWidget* parent)
    : QWidget(parent), m_index(index), m_player(player) {
    setObjectName(QStringLiteral("playerControls_%1").arg(index));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_slider = new VolumeSlider(index, this);
    m_slider->setLevel(m_player ? m_player->volume() : kLevelScale);
    m_cmdMute = new QPushButton(QStringLiteral("Mute"), this);
    m_cmdMute->setObjectName(QStringLiteral("cmdMute_%1").arg(index));
    m_cmdMute->setToolTip(index == kTextAndSpeechIndex ? QStringLiteral("Silence the voice")
                                                       : QStringLiteral("Mute or unmute"));
    m_cmdStop = new QPushButton(QStringLiteral("Stop"), this);
    m_cmdStop->setObjectName(QStringLiteral("cmdStop_%1").arg(index));
    m_cmdStop->setToolTip(index == kTextAndSpeechIndex ? QStringLiteral("Stop speaking")
                                                       : QStringLiteral("Stop playing"));
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_cmdMute);
    layout->addWidget(m_cmdStop);

    connect(m_slider, &VolumeSlider::levelChanged, this,
            [this](int, int level) { picSlider_Change(level); });
    connect(m_cmdMute, &QPushButton::clicked, this, &PlayerControls::cmdMute_Click);
    connect(m_cmdStop, &QPushButton::clicked, this, &PlayerControls::cmdStop_Click);
}

MediaPlayer* PlayerControls::player() const {
    return m_player;
}

bool PlayerControls::muted() const {
    return m_cmdMute->font().bold();
}

void PlayerControls::picSlider_Change(int level) {
    if (m_index != kUndrivenSliderIndex && m_player)
        m_player->setVolume(level * kPlayerVolumeMax / kLevelScale);
}

void PlayerControls::cmdMute_Click() {
    QFont font = m_cmdMute->font();
    const bool mute = !font.bold();
    font.setBold(mute);
    m_cmdMute->setFont(font);
    m_cmdMute->setAccessibleDescription(mute ? QStringLiteral("Muted") : QString());
    if (m_index == kTextAndSpeechIndex) {
        if (mute)
            emit stopSpeechRequested();
        return;
    }
    if (m_player)
        m_player->setMute(mute);
}

void PlayerControls::cmdStop_Click() {
    if (m_index == kTextAndSpeechIndex)
        emit stopSpeechRequested();
    if (m_player)
        m_player->stop();
    emit stopped(m_index);
}

void PlayerControls::mousePressEvent(QMouseEvent* event) {
    if (m_player)
        m_player->notifyClick();
    emit playerClicked(m_index);
    QWidget::mousePressEvent(event);
}

} // namespace cq
