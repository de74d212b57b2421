#pragma once

#include <QMediaPlayer>
#include <QObject>
#include <QString>

class QAudioOutput;

namespace cq {

// The numeric play states the rest of the program reacts to.
enum class PlayState {
    Undefined = 0,
    Stopped = 1,
    Paused = 2,
    Playing = 3,
    Buffering = 6,
    MediaEnded = 8,
    Transitioning = 9,
    Ready = 10,
};

// Qt's two state axes folded into one play state. hasPlayed tells a stop after playing
// (Stopped) from a fresh load (Ready).
PlayState MapPlayState(QMediaPlayer::PlaybackState state, QMediaPlayer::MediaStatus status,
                       bool hasPlayed);

// One media player as the studio uses it: give it a URL and it plays; volume 0 to 100, mute,
// position in seconds, full screen for the one that shows video. Volume and mute are kept
// without media too.
class MediaPlayer : public QObject {
    Q_OBJECT
public:
    explicit MediaPlayer(QObject* parent = nullptr);

    // A local path or a URL; setting it starts playback. Empty closes.
    void setURL(const QString& url);
    QString URL() const { return m_url; }
    // Loads the media without playing it: it waits, paused at its first picture, for play().
    void cue(const QString& url);
    void close();

    int playState() const { return static_cast<int>(m_playState); }
    void play();
    void pause();
    void stop();

    double currentPosition() const;
    // Moves the play position as the user would; positionChange follows.
    void setCurrentPosition(double seconds);
    qint64 durationMs() const;

    int volume() const { return m_volume; }
    void setVolume(int volume);
    bool mute() const;
    void setMute(bool mute);

    bool fullScreen() const { return m_fullScreen; }
    void setFullScreen(bool fullScreen);

    void setVideoOutput(QObject* output);
    QMediaPlayer* mediaPlayer() const { return m_player; }
    QString errorString() const;

    // For the widget that shows the player: the user clicked it.
    void notifyClick();

signals:
    void playStateChange(int newState);
    void positionChange(double oldPosition, double newPosition);
    void click();
    void fullScreenChanged(bool fullScreen);
    // Playback progress, for a position bar (not a user move: see positionChange).
    void positionTick(qint64 ms);
    void durationChanged(qint64 ms);

private:
    void updatePlayState();
    void setPlayState(PlayState state);

    QMediaPlayer* m_player = nullptr;
    QAudioOutput* m_audio = nullptr;
    QString m_url;
    PlayState m_playState = PlayState::Undefined;
    int m_volume = 100;
    bool m_hasPlayed = false;
    bool m_fullScreen = false;
};

} // namespace cq
