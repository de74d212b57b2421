#pragma once

#include "take/SoundLevel.h"

#include <QtGlobal>

namespace cq {

// Tells the user when the microphone hears nothing while a take is recorded, or clips. Time is
// counted in the sound measured, not by the wall clock, so a busy window cannot fake a silence.
class LevelWarnings {
public:
    // Quiet for this long while recording: the microphone is probably off or muted.
    static constexpr qint64 kSilenceMs = 2000;
    // How long "Too loud" stays after the last sample at full scale.
    static constexpr qint64 kTooLoudMs = 1500;

    // Silence only matters while recording; the count starts afresh each time it is switched on.
    void setWatchingSilence(bool watching);
    void addWindow(double peakDb, bool clipped, qint64 windowMs);
    void reset();
    LevelWarning warning() const;

private:
    bool m_watching = false;
    qint64 m_quietMs = 0;
    qint64 m_sinceClipMs = -1; // -1: no clip seen
};

} // namespace cq
