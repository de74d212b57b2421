#include "timeline/QtVoicePlayer.h"

#include "library/playback/MediaPlayer.h"

namespace cq {

QtVoicePlayer::QtVoicePlayer(MediaPlayer* player, QObject* parent)
    : QObject(parent), m_player(player ? player : new MediaPlayer(this)) {
    QMediaPlayer* qt = m_player->mediaPlayer();
    connect(qt, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus s) {
        if (s == QMediaPlayer::EndOfMedia || s == QMediaPlayer::InvalidMedia)
            m_ended = true;
    });
    connect(qt, &QMediaPlayer::errorOccurred, this, [this] { m_ended = true; });
}

void QtVoicePlayer::play(const QString& fileSpec) {
    m_ended = false;
    // The same file again would not load anew; replay always starts from the top.
    if (m_player->URL() == fileSpec) {
        m_player->stop();
        m_player->play();
    } else {
        m_player->setURL(fileSpec);
    }
}

void QtVoicePlayer::stop() {
    m_player->stop();
    m_ended = true;
}

void QtVoicePlayer::release() {
    stop();
    m_player->close();
}

qint64 QtVoicePlayer::positionMs() const {
    return m_player->mediaPlayer()->position();
}

bool QtVoicePlayer::hasEnded() const {
    return m_ended;
}

} // namespace cq
