#pragma once

#include "timeline/VoicePlayer.h"

#include <QObject>

class QAudioOutput;
class QMediaPlayer;

namespace cq {

// RecordedAudioPlayBackWMP: plays the recorded voice through the default sound output.
class QtVoicePlayer : public QObject, public VoicePlayer {
    Q_OBJECT
public:
    explicit QtVoicePlayer(QObject* parent = nullptr);

    void play(const QString& fileSpec) override;
    void stop() override;
    void release() override;
    qint64 positionMs() const override;
    bool hasEnded() const override;

private:
    QMediaPlayer* m_player;
    QAudioOutput* m_output;
    bool m_ended = true;
};

} // namespace cq
