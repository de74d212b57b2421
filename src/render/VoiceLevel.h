#pragma once

#include "platform/FfmpegOutput.h"
#include "platform/ToolCommand.h"
#include "render/VoiceOptions.h"

#include <QByteArray>
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

// What the mix does to the voice, as its measurements decided: the level of its background
// noise, a gain, and whether a limiter must hold the peaks that the gain would push over the
// ceiling.
struct VoiceTreatment {
    double noiseFloorDb = -50.0;
    double gainDb = 0.0;
    bool limit = false;

    bool operator==(const VoiceTreatment&) const = default;
    // "noise_db=-38.00 gain_db=19.20 limit=1", as kept in the render's work space.
    QString text() const;
    static std::optional<VoiceTreatment> fromText(const QString& text);
};

// The background noise as noise reduction takes it: the voice's quietest stretches, within the
// range the reduction works in.
double NoiseFloorForReduction(double measuredDb);
// The gain that brings a voice of this measured loudness to the target. A voice too quiet to
// measure (silence, a cable that was not plugged in) is left alone rather than raised into noise.
VoiceTreatment WithGainForLoudness(VoiceTreatment treatment, const LoudnessSummary& voice);
// The limiter takes some loudness away with the peaks, the more the higher the gain: measured
// through the gain and the limiter, the gain moves by what is missing. True when the measured
// loudness was already on target, so there is nothing to measure again.
constexpr double kVoiceOnTargetLu = 0.2;
bool MakeUpLimiterLoss(VoiceTreatment& treatment, const LoudnessSummary& limited);

// The filters of the voice's part of the mix, in order: the mix down to at most two channels,
// noise reduction, gain, limiter. Empty when the voice goes in as it was recorded. treatment: none
// leaves the level as it is.
QString VoiceFilter(const VoiceOptions& options, const std::optional<VoiceTreatment>& treatment);

// The filter that measures the noise floor (astats), and the one that measures the loudness the
// mix would hear through the treatment so far (ebur128); each prints its summary on stderr.
QString NoiseFloorMeasureFilter(const VoiceOptions& options);
QString LoudnessMeasureFilter(const VoiceOptions& options, const VoiceTreatment& treatment);
// A short name for a voice file as it is now, with salt (what is made of it, and how): its size
// and time tell a new take from the old one; its head and tail catch a file copied in place with
// its time kept. Reading the whole voice would cost the window a moment for long takes.
QString VoiceFileKey(const QString& voice, const QByteArray& salt);

// A run of ffmpeg that puts the voice through a measuring filter.
ToolCommand VoiceMeasureCommand(const QString& ffmpeg, const QString& voice, const QString& filter);

} // namespace cq
