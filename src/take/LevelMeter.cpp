#include "take/LevelMeter.h"

#include <algorithm>
#include <cmath>

namespace cq {

namespace {
constexpr double kFullScale = 32768.0;
// 32767 is full scale for a positive sample: it rounds to 0 dBFS.
constexpr int kClipAbs = 32767;

double toDb(double amplitude) {
    if (amplitude <= 0)
        return kLevelFloorDb;
    return std::clamp(20.0 * std::log10(amplitude / kFullScale), kLevelFloorDb, 0.0);
}
} // namespace

LevelMeter::LevelMeter(int samplesPerSecond)
    : m_windowSamples(std::max(1, samplesPerSecond / kWindowsPerSecond)),
      m_windowMs(1000 / kWindowsPerSecond) {}

void LevelMeter::addSamples(QByteArrayView pcm) {
    const auto* bytes = reinterpret_cast<const uchar*>(pcm.data());
    qsizetype i = 0;
    if (m_carry >= 0 && !pcm.isEmpty()) {
        addSample(static_cast<qint16>(m_carry | (bytes[0] << 8)));
        m_carry = -1;
        i = 1;
    }
    for (; i + 1 < pcm.size(); i += 2)
        addSample(static_cast<qint16>(bytes[i] | (bytes[i + 1] << 8)));
    if (i < pcm.size())
        m_carry = bytes[i];
}

void LevelMeter::addSample(qint16 sample) {
    const int a = std::abs(int(sample));
    m_maxAbs = std::max(m_maxAbs, a);
    m_clipped = m_clipped || a >= kClipAbs;
    m_sumOfSquares += double(sample) * sample;
    if (++m_count == m_windowSamples)
        finishWindow();
}

void LevelMeter::finishWindow() {
    m_level.rmsDb = toDb(std::sqrt(m_sumOfSquares / m_count));
    m_level.peakDb = toDb(m_maxAbs);
    m_heldAgeMs += m_windowMs;
    if (m_level.peakDb >= m_level.heldPeakDb || m_heldAgeMs > kPeakHoldMs) {
        m_level.heldPeakDb = m_level.peakDb;
        m_heldAgeMs = 0;
    }
    m_warnings.addWindow(m_level.peakDb, m_clipped, m_windowMs);
    ++m_windows;
    m_count = 0;
    m_sumOfSquares = 0;
    m_maxAbs = 0;
    m_clipped = false;
}

void LevelMeter::reset() {
    m_level = SoundLevel();
    m_warnings.reset();
    m_heldAgeMs = 0;
    m_count = 0;
    m_sumOfSquares = 0;
    m_maxAbs = 0;
    m_clipped = false;
    m_carry = -1;
}

} // namespace cq
