// The progress ffmpeg prints while it encodes: "time=" on stderr during a conversion, the
// "out_time_us=" lines of -progress during the mix, turned into a percent of the input's length.
#include "FuzzSupport.h"

#include "platform/FfmpegOutput.h"

#include <QRegularExpression>

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text = QString::fromUtf8(fuzz::InputBytes(data, size));
    static const QRegularExpression lineEnd(QStringLiteral("[\r\n]"));
    const QStringList lines = text.split(lineEnd, Qt::SkipEmptyParts);
    // As a conversion reads them: the first duration is the input's length.
    qint64 totalMs = -1;
    for (const QString& line : lines) {
        if (totalMs <= 0) {
            totalMs = FfmpegDurationMs(line);
            continue;
        }
        const qint64 reached = FfmpegProgressMs(line);
        if (reached < 0)
            continue;
        const int percent = FfmpegProgressPercent(reached, totalMs);
        fuzz::Check(percent >= 0 && percent <= 99, "a progress percent out of its range");
    }
    return 0;
}
