#pragma once

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
    static constexpr int kTextAndSpeechIndex = 4;
    static constexpr int kUndrivenSliderIndex = 5;

    PlayerControls(int index, MediaPlayer* player, QWidget* parent = nullptr);

    int index() const { return m_index; }
    MediaPlayer* player() const;
    VolumeSlider* slider() const { return m_slider; }
    bool muted() const;

    void cmdMute_Click();
    void cmdStop_Click();

signals:
    void stopSpeechRequested();
    void stopped(int index);
    // The user touched this tab's player: it becomes the audio player last used.
    void playerClicked(int index);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    void picSlider_Change(int level);

    int m_index;
    QPointer<MediaPlayer> m_player;
    VolumeSlider* m_slider = nullptr;
    QPushButton* m_cmdMute = nullptr;
    QPushButton* m_cmdStop = nullptr;
};

} // namespace cq
