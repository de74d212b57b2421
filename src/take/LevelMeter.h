#pragma once

#include "take/LevelWarnings.h"
#include "take/SoundLevel.h"

#include <QByteArrayView>
#include <QtGlobal>

namespace cq {

// Measures 16-bit mono PCM as it arrives from the microphone: peak and RMS of every twentieth of
// a second, a peak hold of about a second, and the warnings for silence and clipping.
class LevelMeter {
public:
    static constexpr int kWindowsPerSecond = 20;
    static constexpr qint64 kPeakHoldMs = 1000;

    explicit LevelMeter(int samplesPerSecond = 44100);

    // Bytes of little-endian 16-bit samples, in pieces of any size (a sample may be split).
    void addSamples(QByteArrayView pcm);
    // The input changed or closed: back to the floor, no warning.
    void reset();
    void setWatchingSilence(bool watching) { m_warnings.setWatchingSilence(watching); }

    SoundLevel level() const { return m_level; }
    LevelWarning warning() const { return m_warnings.warning(); }
    // Windows measured since the start; shows that sound is still arriving.
    qint64 windowsMeasured() const { return m_windows; }

private:
    void addSample(qint16 sample);
    void finishWindow();

    int m_windowSamples;
    qint64 m_windowMs;
    LevelWarnings m_warnings;
    SoundLevel m_level;
    qint64 m_heldAgeMs = 0;
    qint64 m_windows = 0;
    // The window being measured.
    int m_count = 0;
    double m_sumOfSquares = 0;
    int m_maxAbs = 0;
    bool m_clipped = false;
    // A byte left over from a piece that ended mid-sample.
    int m_carry = -1;
};

} // namespace cq
