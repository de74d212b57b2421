#include "render/FfmpegDialect.h"

#include <QRegularExpression>

namespace cq::FfmpegDialect {

namespace {
constexpr int kMinSide = 16;
constexpr int kMaxSide = 4096;
} // namespace

QString FrameRate(const QString& gstrFrameRate) {
    static const QRegularExpression plain(QRegularExpression::anchoredPattern(
        QStringLiteral("[0-9]{1,3}(\\.[0-9]{1,3}|/[0-9]{1,5})?")));
    const QString rate = gstrFrameRate.trimmed();
    if (rate == u"29.97" || !plain.match(rate).hasMatch())
        return QStringLiteral("30000/1001");
    return rate;
}

double FramesPerSecond(const QString& gstrFrameRate) {
    const QString rate = FrameRate(gstrFrameRate);
    const qsizetype slash = rate.indexOf(u'/');
    if (slash > 0) {
        const double num = rate.left(slash).toDouble();
        const double den = rate.mid(slash + 1).toDouble();
        return den > 0 && num > 0 ? num / den : 30000.0 / 1001.0;
    }
    const double fps = rate.toDouble();
    return fps > 0 ? fps : 30000.0 / 1001.0;
}

QSize ParseFrameSize(const QString& gstrVideoRes) {
    static const QRegularExpression re(
        QRegularExpression::anchoredPattern(QStringLiteral("([0-9]{1,5})[xX]([0-9]{1,5})")));
    const QRegularExpressionMatch m = re.match(gstrVideoRes);
    if (!m.hasMatch())
        return {};
    const int w = m.captured(1).toInt();
    const int h = m.captured(2).toInt();
    if (w < kMinSide || h < kMinSide || w > kMaxSide || h > kMaxSide || w % 2 || h % 2)
        return {};
    return {w, h};
}

QString FrameSizeProblem(const QString& gstrVideoRes) {
    return QStringLiteral("\"%1\" is not a frame size; use WIDTHXHEIGHT with even numbers from "
                          "%2 to %3, for example 320X240.")
        .arg(gstrVideoRes)
        .arg(kMinSide)
        .arg(kMaxSide);
}

QString PieceEncoderOptions() {
    return QStringLiteral("-an -c:v mpeg4 -q:v 4 -g 300 -threads 1 -f avi");
}

QString JoinedInputFormat() {
    return QStringLiteral("-f concat -safe 0");
}

QString FinalEncoderOptions() {
    return QStringLiteral("-c:v copy -c:a mp2 -b:a 128k");
}

} // namespace cq::FfmpegDialect
