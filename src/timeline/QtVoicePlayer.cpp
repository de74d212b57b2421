#include "timeline/QtVoicePlayer.h"

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QUrl>

namespace cq {

QtVoicePlayer::QtVoicePlayer(QObject* parent)
    : QObject(parent), m_player(new QMediaPlayer(this)), m_output(new QAudioOutput(this)) {
    m_player->setObjectName(QStringLiteral("RecordedAudioPlayBackWMP"));
    m_player->setAudioOutput(m_output);
    connect(m_player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus s) {
        if (s == QMediaPlayer::EndOfMedia || s == QMediaPlayer::InvalidMedia)
            m_ended = true;
    });
    connect(m_player, &QMediaPlayer::errorOccurred, this, [this] { m_ended = true; });
}

void QtVoicePlayer::play(const QString& fileSpec) {
    m_ended = false;
    m_player->setSource(QUrl::fromLocalFile(fileSpec));
    m_player->play();
}

void QtVoicePlayer::stop() {
    m_player->stop();
    m_ended = true;
}

void QtVoicePlayer::release() {
    stop();
    m_player->setSource(QUrl());
}

qint64 QtVoicePlayer::positionMs() const {
    return m_player->position();
}

bool QtVoicePlayer::hasEnded() const {
    return m_ended;
}

} // namespace cq
