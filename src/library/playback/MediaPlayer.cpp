#include "library/playback/MediaPlayer.h"

#include <QAudio>
#include <QAudioOutput>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace cq {

PlayState MapPlayState(QMediaPlayer::PlaybackState state, QMediaPlayer::MediaStatus status,
                       bool hasPlayed) {
    switch (status) {
    case QMediaPlayer::NoMedia:
        return PlayState::Undefined;
    case QMediaPlayer::InvalidMedia:
        return PlayState::Undefined;
    case QMediaPlayer::LoadingMedia:
        return PlayState::Transitioning;
    case QMediaPlayer::EndOfMedia:
        return PlayState::MediaEnded;
    case QMediaPlayer::StalledMedia:
    case QMediaPlayer::BufferingMedia:
        if (state == QMediaPlayer::PlayingState)
            return PlayState::Buffering;
        break;
    case QMediaPlayer::LoadedMedia:
    case QMediaPlayer::BufferedMedia:
        break;
    }
    switch (state) {
    case QMediaPlayer::PlayingState:
        return PlayState::Playing;
    case QMediaPlayer::PausedState:
        return PlayState::Paused;
    case QMediaPlayer::StoppedState:
        return hasPlayed ? PlayState::Stopped : PlayState::Ready;
    }
    return PlayState::Undefined;
}

MediaPlayer::MediaPlayer(QObject* parent)
    : QObject(parent), m_player(new QMediaPlayer(this)), m_audio(new QAudioOutput(this)) {
    m_player->setAudioOutput(m_audio);
    // At the end Qt reports the stop before the end of media; reading both once they have
    // settled tells an ended play from a stop.
    connect(m_player, &QMediaPlayer::playbackStateChanged, this, &MediaPlayer::updatePlayState,
            Qt::QueuedConnection);
    connect(m_player, &QMediaPlayer::mediaStatusChanged, this, &MediaPlayer::updatePlayState,
            Qt::QueuedConnection);
    connect(m_player, &QMediaPlayer::positionChanged, this, &MediaPlayer::positionTick);
    connect(m_player, &QMediaPlayer::durationChanged, this, &MediaPlayer::durationChanged);
}

void MediaPlayer::setURL(const QString& url) {
    m_url = url;
    m_hasPlayed = false;
    if (url.isEmpty()) {
        close();
        return;
    }
    const QUrl source =
        QFileInfo(url).isAbsolute() || !url.contains(u':') ? QUrl::fromLocalFile(url) : QUrl(url);
    m_player->setSource(source);
    play();
}

void MediaPlayer::cue(const QString& url) {
    m_url = url;
    m_hasPlayed = false;
    if (url.isEmpty()) {
        close();
        return;
    }
    m_player->setSource(QUrl::fromLocalFile(url));
    m_player->pause();
}

void MediaPlayer::close() {
    m_player->stop();
    m_player->setSource(QUrl());
    m_url.clear();
    m_hasPlayed = false;
    setPlayState(PlayState::Undefined);
}

void MediaPlayer::play() {
    if (m_player->source().isEmpty())
        return;
    m_hasPlayed = true;
    m_player->play();
}

void MediaPlayer::pause() {
    m_player->pause();
}

void MediaPlayer::stop() {
    m_player->stop();
}

double MediaPlayer::currentPosition() const {
    return m_player->position() / 1000.0;
}

void MediaPlayer::setCurrentPosition(double seconds) {
    const double old = currentPosition();
    const qint64 ms = static_cast<qint64>(std::max(0.0, seconds) * 1000.0 + 0.5);
    m_player->setPosition(ms);
    // The place asked for, not the player's clock read back: a playing clock has moved on by
    // the time it is read, by a millisecond or more on a busy machine.
    emit positionChange(old, double(ms) / 1000.0);
}

qint64 MediaPlayer::durationMs() const {
    return m_player->duration();
}

void MediaPlayer::setVolume(int volume) {
    m_volume = std::clamp(volume, 0, 100);
    // The level is what the ear hears; the output wants a linear factor.
    m_audio->setVolume(static_cast<float>(QAudio::convertVolume(
        m_volume / 100.0, QAudio::LogarithmicVolumeScale, QAudio::LinearVolumeScale)));
}

bool MediaPlayer::mute() const {
    return m_audio->isMuted();
}

void MediaPlayer::setMute(bool mute) {
    m_audio->setMuted(mute);
}

void MediaPlayer::setFullScreen(bool fullScreen) {
    if (m_fullScreen == fullScreen)
        return;
    m_fullScreen = fullScreen;
    emit fullScreenChanged(fullScreen);
}

void MediaPlayer::setVideoOutput(QObject* output) {
    m_player->setVideoOutput(output);
}

QString MediaPlayer::errorString() const {
    return m_player->errorString();
}

void MediaPlayer::notifyClick() {
    emit click();
}

void MediaPlayer::updatePlayState() {
    const PlayState state =
        MapPlayState(m_player->playbackState(), m_player->mediaStatus(), m_hasPlayed);
    if (state == PlayState::MediaEnded) {
        if (m_playState == PlayState::Stopped)
            return;
        // The end is reported, then the player rests stopped like any other stop.
        setPlayState(PlayState::MediaEnded);
        setPlayState(PlayState::Stopped);
        return;
    }
    setPlayState(state);
}

void MediaPlayer::setPlayState(PlayState state) {
    if (state == m_playState)
        return;
    m_playState = state;
    emit playStateChange(static_cast<int>(state));
}

} // namespace cq
