#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class QPushButton;
class QSlider;

namespace cq {

class MediaPlayer;

// Play/pause and the position bar of a player. Moving the bar is the user's position change
// the player reports (positionChange); playback progress only follows it.
class PlayerTransport : public QWidget {
    Q_OBJECT
public:
    PlayerTransport(MediaPlayer* player, QWidget* parent = nullptr);

    QSlider* positionBar() const { return m_sldPosition; }
    static QString timeText(double seconds);

private:
    void cmdPlayPause_Click();
    void seekToBar();
    void showPosition(double seconds);
    void showDuration(double seconds);
    void showState(int playState);

    QPointer<MediaPlayer> m_player;
    QPushButton* m_cmdPlayPause = nullptr;
    QSlider* m_sldPosition = nullptr;
    QLabel* m_lblTime = nullptr;
    double m_duration = 0;
};

} // namespace cq
