#include "render/VoiceLevel.h"

#include "platform/ShellQuote.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace cq {

namespace {

// Under this the voice is silence or hum: raising it to the target would only raise noise.
constexpr double kQuietestMeasurableLufs = -60.0;
constexpr double kMaxGainDb = 30.0;
// The limiter never costs more than this much loudness on speech; a larger shortfall would mean
// a measurement gone wrong, not a reason to drive the limiter harder.
constexpr double kMaxCorrectionDb = 6.0;

QString decibels(double db) {
    return QString::number(db, 'f', 2);
}

// The limiter sees the sound four times oversampled, so that it holds the peaks between the
// samples too; latency=1 keeps the voice in step with the picture.
QString limiterChain() {
    return QStringLiteral("aresample=176400,alimiter=limit=%1:attack=1:release=50:level=0:"
                          "latency=1,aresample=44100")
        .arg(QString::number(std::pow(10.0, kVoiceLimitDb / 20.0), 'f', 4));
}

} // namespace

QString VoiceGain::text() const {
    return QStringLiteral("gain_db=%1 limit=%2\n").arg(decibels(gainDb)).arg(limit ? 1 : 0);
}

std::optional<VoiceGain> VoiceGain::fromText(const QString& text) {
    static const QRegularExpression re(QRegularExpression::anchoredPattern(
        QStringLiteral("gain_db=(-?[0-9]{1,2}\\.[0-9]{2}) limit=([01])\\n")));
    const QRegularExpressionMatch m = re.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    return VoiceGain{m.captured(1).toDouble(), m.captured(2) == u"1"};
}

VoiceGain GainForLoudness(const LoudnessSummary& voice) {
    if (!voice.ok() || voice.integratedLufs < kQuietestMeasurableLufs)
        return {};
    VoiceGain g;
    g.gainDb = std::clamp(kVoiceTargetLufs - voice.integratedLufs, -kMaxGainDb, kMaxGainDb);
    g.limit = voice.truePeakDb + g.gainDb > kVoiceLimitDb;
    return g;
}

VoiceGain CorrectedGain(const VoiceGain& first, const LoudnessSummary& limited) {
    if (!first.limit || !limited.ok())
        return first;
    VoiceGain g = first;
    g.gainDb += std::clamp(kVoiceTargetLufs - limited.integratedLufs, 0.0, kMaxCorrectionDb);
    return g;
}

QString VoiceFilter(const VoiceOptions& options, const std::optional<VoiceGain>& gain) {
    QStringList filters;
    if (options.reduceNoise)
        filters << QStringLiteral("afftdn=nr=12:nf=-50:tn=1"); // follows the noise as it changes
    if (gain && gain->gainDb != 0.0)
        filters << QStringLiteral("volume=%1dB").arg(decibels(gain->gainDb));
    if (gain && gain->limit)
        filters << limiterChain();
    return filters.join(u',');
}

QString VoiceMeasureLine(const QString& ffmpeg, const QString& voice, const VoiceOptions& options,
                         const std::optional<VoiceGain>& gain) {
    QString filter = VoiceFilter(options, gain);
    // framelog=verbose keeps the line per 100 ms out of stderr; the summary still comes.
    filter += (filter.isEmpty() ? QString() : QStringLiteral(",")) +
              QStringLiteral("ebur128=peak=true:framelog=verbose");
    return ShellQuote(ffmpeg) + QStringLiteral(" -nostdin -hide_banner -nostats -i ") +
           ShellQuote(voice) + QStringLiteral(" -af ") + ShellQuote(filter) +
           QStringLiteral(" -f null -");
}

} // namespace cq
