#pragma once

#include "platform/FfmpegOutput.h"
#include "render/VoiceOptions.h"

#include <QString>

#include <optional>

namespace cq {

// Every voice is brought to the loudness of spoken broadcast audio, its true peaks kept under
// a ceiling that leaves the lossy encoders of the results room to overshoot.
constexpr double kVoiceTargetLufs = -16.0;
constexpr double kVoicePeakCeilingDb = -1.5;
// Where the limiter holds the peaks, measured on the sound four times oversampled: a decibel
// under the ceiling, for the overshoot of resampling back and of the encoders.
constexpr double kVoiceLimitDb = -2.5;

// What the mix does to the voice's level: a gain, and whether a limiter must hold the peaks
// that the gain would push over the ceiling.
struct VoiceGain {
    double gainDb = 0.0;
    bool limit = false;

    bool operator==(const VoiceGain&) const = default;
    // "gain_db=19.20 limit=1", as kept in the render's work space.
    QString text() const;
    static std::optional<VoiceGain> fromText(const QString& text);
};

// The gain that brings a voice of this measured loudness to the target. A voice too quiet to
// measure (silence, a cable that was not plugged in) is left alone rather than raised into noise.
VoiceGain GainForLoudness(const LoudnessSummary& voice);
// The limiter takes some loudness away with the peaks: measured again after the first gain and
// the limiter, the gain is raised by what is missing.
VoiceGain CorrectedGain(const VoiceGain& first, const LoudnessSummary& limited);

// The filters of the voice's part of the mix, in order: noise reduction, gain, limiter. Empty
// when the voice goes in as it was recorded. gain: none leaves the level as it is.
QString VoiceFilter(const VoiceOptions& options, const std::optional<VoiceGain>& gain);

// A run that measures the voice as the mix would hear it through the given gain (none: the voice
// after noise reduction alone): ffmpeg's ebur128 summary on stderr.
QString VoiceMeasureLine(const QString& ffmpeg, const QString& voice, const VoiceOptions& options,
                         const std::optional<VoiceGain>& gain);

} // namespace cq
