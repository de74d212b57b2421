// What ffmpeg and ffprobe print about lengths: the input's "Duration:" line (a conversion reads
// stderr line by line, the result check reads it whole), ffprobe's stream and container
// durations, and the loudness and noise-floor summaries the voice is measured with.
#include "FuzzSupport.h"

#include "platform/FfmpegOutput.h"

#include <QRegularExpression>

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text = QString::fromUtf8(fuzz::InputBytes(data, size));
    FfmpegDurationMs(text);
    static const QRegularExpression lineEnd(QStringLiteral("[\r\n]"));
    for (const QString& line : text.split(lineEnd, Qt::SkipEmptyParts))
        FfmpegDurationMs(line);
    const ProbedLengths lengths = FfprobeLengths(text);
    fuzz::Check(lengths.videoMs >= -1 && lengths.audioMs >= -1 && lengths.formatMs >= -1,
                "a probed length is negative");
    FfmpegLoudnessSummary(text);
    FfmpegNoiseFloorDb(text);
    return 0;
}
