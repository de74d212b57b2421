#pragma once

#include "timeline/VoicePlayer.h"

#include <QObject>

namespace cq {

class MediaPlayer;

// RecordedAudioPlayBackWMP as the replay sees it: the recorded voice played through the
// window's voice player, so its volume slider and mute button govern the replay too.
class QtVoicePlayer : public QObject, public VoicePlayer {
    Q_OBJECT
public:
    // Without a player of the window's, the voice gets a player of its own.
    explicit QtVoicePlayer(MediaPlayer* player, QObject* parent = nullptr);

    void play(const QString& fileSpec) override;
    void stop() override;
    void release() override;
    qint64 positionMs() const override;
    bool hasEnded() const override;

private:
    MediaPlayer* m_player;
    bool m_ended = true;
};

} // namespace cq
