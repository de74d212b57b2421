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
    // "m:ss", the seconds cut, never rounded up.
    static QString timeText(qint64 ms);

private:
    void cmdPlayPause_Click();
    void seekToBar();
    void showPosition(qint64 ms);
    void showDuration(qint64 ms);
    void showState(int playState);

    QPointer<MediaPlayer> m_player;
    QPushButton* m_cmdPlayPause = nullptr;
    QSlider* m_sldPosition = nullptr;
    QLabel* m_lblTime = nullptr;
    qint64 m_durationMs = 0;
};

} // namespace cq
