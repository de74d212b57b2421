#include "render/VoiceLevel.h"

#include "render/FfmpegInputs.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
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
// The noise floors ffmpeg's afftdn accepts.
constexpr double kLowestNoiseFloorDb = -80.0;
constexpr double kHighestNoiseFloorDb = -20.0;

// The results carry the voice in one or two channels, and a voice of more (a 5.1 recording) is
// mixed down by the encoder: measured before that mix, its loudness would be another's. Such a
// voice is mixed down first, so that every measurement hears what is encoded. The layout is named
// alone: given a choice, ffmpeg 5.1 makes two channels of no known layout, which ebur128 ignores.
QString downmix(const VoiceOptions& options) {
    return options.mixDown ? QStringLiteral("aformat=channel_layouts=stereo") : QString();
}

// The filters joined, the empty ones left out.
QString chain(QStringList filters) {
    filters.removeAll(QString());
    return filters.join(u',');
}

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

QString VoiceTreatment::text() const {
    return QStringLiteral("noise_db=%1 gain_db=%2 limit=%3\n")
        .arg(decibels(noiseFloorDb), decibels(gainDb))
        .arg(limit ? 1 : 0);
}

std::optional<VoiceTreatment> VoiceTreatment::fromText(const QString& text) {
    static const QRegularExpression re(QRegularExpression::anchoredPattern(
        QStringLiteral("noise_db=(-[0-9]{1,2}\\.[0-9]{2}) gain_db=(-?[0-9]{1,2}\\.[0-9]{2}) "
                       "limit=([01])\\n")));
    const QRegularExpressionMatch m = re.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    return VoiceTreatment{m.captured(1).toDouble(), m.captured(2).toDouble(),
                          m.captured(3) == u"1"};
}

double NoiseFloorForReduction(double measuredDb) {
    if (std::isnan(measuredDb))
        return VoiceTreatment{}.noiseFloorDb;
    return std::clamp(measuredDb, kLowestNoiseFloorDb, kHighestNoiseFloorDb);
}

VoiceTreatment WithGainForLoudness(VoiceTreatment t, const LoudnessSummary& voice) {
    if (!voice.ok() || voice.integratedLufs < kQuietestMeasurableLufs)
        return t;
    t.gainDb = std::clamp(kVoiceTargetLufs - voice.integratedLufs, -kMaxGainDb, kMaxGainDb);
    t.limit = voice.truePeakDb + t.gainDb > kVoiceLimitDb;
    return t;
}

bool MakeUpLimiterLoss(VoiceTreatment& t, const LoudnessSummary& limited) {
    const double missing = kVoiceTargetLufs - limited.integratedLufs;
    if (!t.limit || !limited.ok() || std::abs(missing) <= kVoiceOnTargetLu)
        return true;
    t.gainDb =
        std::min(t.gainDb + std::clamp(missing, -kMaxCorrectionDb, kMaxCorrectionDb), kMaxGainDb);
    return false;
}

QString VoiceFilter(const VoiceOptions& options, const std::optional<VoiceTreatment>& treatment) {
    QStringList filters;
    if (options.reduceNoise)
        filters << QStringLiteral("afftdn=nr=12:nf=%1")
                       .arg(decibels(treatment ? treatment->noiseFloorDb
                                               : VoiceTreatment{}.noiseFloorDb));
    if (treatment && treatment->gainDb != 0.0)
        filters << QStringLiteral("volume=%1dB").arg(decibels(treatment->gainDb));
    if (treatment && treatment->limit)
        filters << limiterChain();
    // Without filters the encoder mixes down the same way.
    if (!filters.isEmpty())
        filters.prepend(downmix(options));
    return chain(filters);
}

QString NoiseFloorMeasureFilter(const VoiceOptions& options) {
    return chain({downmix(options),
                  QStringLiteral("astats=measure_overall=Noise_floor:measure_perchannel=none")});
}

QString LoudnessMeasureFilter(const VoiceOptions& options, const VoiceTreatment& treatment) {
    const QString before = VoiceFilter(options, treatment);
    // framelog=verbose keeps the line per 100 ms out of stderr; the summary still comes.
    return chain({before.isEmpty() ? downmix(options) : before,
                  QStringLiteral("ebur128=peak=true:framelog=verbose")});
}

ToolCommand VoiceMeasureCommand(const QString& ffmpeg, const QString& voice,
                                const QString& filter) {
    FfmpegInputs inputs;
    inputs.add(voice);
    // The measuring filters print their summary at the normal log level.
    ToolCommand command = inputs.command(ffmpeg, {QStringLiteral("-nostats")});
    command.arguments << QStringLiteral("-af") << filter << QStringLiteral("-f")
                      << QStringLiteral("null") << QStringLiteral("-");
    command.inputFiles = {voice};
    return command;
}

QString VoiceFileKey(const QString& voice, const QByteArray& salt) {
    constexpr qint64 kKeyedBytes = 64 * 1024;
    const QFileInfo fi(voice);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(salt);
    hash.addData(QStringLiteral("|%1|%2|")
                     .arg(fi.size())
                     .arg(fi.lastModified().toMSecsSinceEpoch())
                     .toUtf8());
    QFile file(voice);
    if (file.open(QIODevice::ReadOnly)) {
        hash.addData(file.read(kKeyedBytes));
        if (file.size() > kKeyedBytes && file.seek(file.size() - kKeyedBytes))
            hash.addData(file.read(kKeyedBytes));
    }
    return QString::fromLatin1(hash.result().toHex().left(16));
}

} // namespace cq
