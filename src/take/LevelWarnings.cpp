#include "take/LevelWarnings.h"

namespace cq {

void LevelWarnings::setWatchingSilence(bool watching) {
    m_watching = watching;
    m_quietMs = 0;
}

void LevelWarnings::addWindow(double peakDb, bool clipped, qint64 windowMs) {
    // A peak at the floor means every sample of the window was under it, digital silence too.
    m_quietMs = peakDb <= kLevelFloorDb ? m_quietMs + windowMs : 0;
    if (clipped)
        m_sinceClipMs = 0;
    else if (m_sinceClipMs >= 0)
        m_sinceClipMs += windowMs;
}

void LevelWarnings::reset() {
    m_quietMs = 0;
    m_sinceClipMs = -1;
}

LevelWarning LevelWarnings::warning() const {
    if (m_watching && m_quietMs >= kSilenceMs)
        return LevelWarning::NoSound;
    if (m_sinceClipMs >= 0 && m_sinceClipMs < kTooLoudMs)
        return LevelWarning::TooLoud;
    return LevelWarning::None;
}

} // namespace cq
