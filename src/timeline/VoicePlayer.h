#pragma once

#include <QString>
#include <QtGlobal>

namespace cq {

// The replay player of the recorded voice; its position is the replay's clock.
class VoicePlayer {
public:
    virtual ~VoicePlayer() = default;
    virtual void play(const QString& fileSpec) = 0;
    virtual void stop() = 0;
    // Stops and lets go of the file, so that a new recording may replace it.
    virtual void release() = 0;
    virtual qint64 positionMs() const = 0;
    // The voice has played to its end (or could not be played at all).
    virtual bool hasEnded() const = 0;
};

} // namespace cq
