#include "render/FfmpegDialect.h"

#include <QRegularExpression>

namespace cq::FfmpegDialect {

QString LoopStillInput() {
    return QStringLiteral("-loop 1");
}

QString FrameRate(const QString& gstrFrameRate) {
    const QString rate = gstrFrameRate.trimmed();
    if (rate.isEmpty() || rate == u"29.97")
        return QStringLiteral("30000/1001");
    return rate;
}

double FramesPerSecond(const QString& gstrFrameRate) {
    const QString rate = FrameRate(gstrFrameRate);
    const qsizetype slash = rate.indexOf(u'/');
    if (slash > 0) {
        const double num = rate.left(slash).toDouble();
        const double den = rate.mid(slash + 1).toDouble();
        return den > 0 ? num / den : 30000.0 / 1001.0;
    }
    const double fps = rate.toDouble();
    return fps > 0 ? fps : 30000.0 / 1001.0;
}

QSize ParseFrameSize(const QString& gstrVideoRes) {
    static const QRegularExpression re(
        QStringLiteral("^\\s*(\\d{1,5})\\s*[xX]\\s*(\\d{1,5})\\s*$"));
    const QRegularExpressionMatch m = re.match(gstrVideoRes);
    if (!m.hasMatch())
        return {};
    const int w = m.captured(1).toInt();
    const int h = m.captured(2).toInt();
    if (w < 16 || h < 16 || w > 4096 || h > 4096)
        return {};
    return {w, h};
}

QString PieceEncoderOptions() {
    return QStringLiteral("-an -c:v mpeg1video -q:v 3 -g 300 -threads 1 -f mpeg1video");
}

QString JoinedInputFormat() {
    return QStringLiteral("-f mpegvideo");
}

QString FinalEncoderOptions() {
    // MP3 in AVI would make the muxer shift every video frame after the first by one frame
    // (the encoder's priming gives it negative timestamps); MPEG audio layer 2 has none.
    return QStringLiteral("-c:v mpeg4 -q:v 4 -c:a mp2 -b:a 128k");
}

} // namespace cq::FfmpegDialect
