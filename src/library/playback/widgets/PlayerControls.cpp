#include "library/playback/widgets/PlayerControls.h"

#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/VolumeSlider.h"
#include "platform/widgets/NamedButton.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace cq {

PlayerControls::PlayerControls(MediaTabId tab, MediaPlayer* player, QWidget* parent)
    : QWidget(parent), m_tab(tab), m_player(player) {
    const int index = TabIndex(tab);
    const bool speech = tab == MediaTabId::TextAndSpeech;
    setObjectName(QStringLiteral("playerControls_%1").arg(index));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_slider = new VolumeSlider(index, this);
    m_slider->setLevel(m_player ? m_player->volume() : kLevelScale);
    m_cmdMute = NamedButton(
        QStringLiteral("Mute"), QStringLiteral("cmdMute_%1").arg(index),
        speech ? QStringLiteral("Silence the voice") : QStringLiteral("Mute or unmute"), this);
    m_cmdStop = NamedButton(
        QStringLiteral("Stop"), QStringLiteral("cmdStop_%1").arg(index),
        speech ? QStringLiteral("Stop speaking") : QStringLiteral("Stop playing"), this);
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
    // The Standard Effects slider moves but drives no player.
    if (m_tab != MediaTabId::StandardEffects && m_player)
        m_player->setVolume(level * kPlayerVolumeMax / kLevelScale);
}

void PlayerControls::cmdMute_Click() {
    QFont font = m_cmdMute->font();
    const bool mute = !font.bold();
    font.setBold(mute);
    m_cmdMute->setFont(font);
    m_cmdMute->setAccessibleDescription(mute ? QStringLiteral("Muted") : QString());
    if (m_tab == MediaTabId::TextAndSpeech) {
        if (mute)
            emit stopSpeechRequested();
        return;
    }
    if (m_player)
        m_player->setMute(mute);
}

void PlayerControls::cmdStop_Click() {
    if (m_tab == MediaTabId::TextAndSpeech)
        emit stopSpeechRequested();
    if (m_player)
        m_player->stop();
}

} // namespace cq
