#pragma once

#include "library/MediaTabs.h"

#include <QPointer>
#include <QWidget>

class QPushButton;

namespace cq {

class MediaPlayer;
class VolumeSlider;

// The sound controls of one media tab: its volume slider, "Mute" (bold while muted) and "Stop".
// The text tab has no player: its mute and stop silence the voice instead (stopSpeechRequested).
class PlayerControls : public QWidget {
    Q_OBJECT
public:
    PlayerControls(MediaTabId tab, MediaPlayer* player, QWidget* parent = nullptr);

    MediaPlayer* player() const;
    VolumeSlider* slider() const { return m_slider; }
    bool muted() const;

    void cmdMute_Click();
    void cmdStop_Click();

signals:
    void stopSpeechRequested();

private:
    void picSlider_Change(int level);

    MediaTabId m_tab;
    QPointer<MediaPlayer> m_player;
    VolumeSlider* m_slider = nullptr;
    QPushButton* m_cmdMute = nullptr;
    QPushButton* m_cmdStop = nullptr;
};

} // namespace cq
