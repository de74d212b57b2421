#include "render/SegmentBuilders.h"

#include "app/TimeCode.h"
#include "platform/ShellQuote.h"
#include "render/FfmpegDialect.h"

#include <cmath>

namespace cq {

namespace {

QString timeCodeOf(const QString& secondsText) {
    return SecondsAndMSToHHMMSSMS(secondsText.trimmed().toDouble());
}

QString lastFour(const QString& file) {
    return file.right(4).toLower();
}

} // namespace

QString SegmentContext::rateAndSize() const {
    return QStringLiteral("-r ") + FfmpegDialect::FrameRate(gstrFrameRate) +
           QStringLiteral(" -s ") + gstrVideoRes;
}

FourByThreeFit FitToFourByThree(int width, int height) {
    FourByThreeFit fit;
    if (width <= 0 || height <= 0)
        return fit;
    const double aspect = 4.0 / 3.0;
    // Integer comparison: 640 by 480 must count as exactly 4:3.
    const qint64 lhs = qint64(width) * 3;
    const qint64 rhs = qint64(height) * 4;
    if (lhs < rhs) {
        fit.canvas = QSizeF(height * aspect, height);
        fit.offset = QPointF((fit.canvas.width() - width) / 2.0, 0);
    } else if (lhs > rhs) {
        fit.canvas = QSizeF(width, width / aspect);
        fit.offset = QPointF(0, (fit.canvas.height() - height) / 2.0);
    } else {
        fit.canvas = QSizeF(width, height);
        fit.exact = true;
    }
    return fit;
}

QString PictureNameOf(const QString& pictureFile) {
    qsizetype cut = -1;
    for (QChar sep : {u'\\', u'/', u':'})
        cut = std::max(cut, pictureFile.lastIndexOf(sep));
    const QString name = pictureFile.mid(cut + 1);
    const qsizetype dot = name.indexOf(u'.');
    return dot < 0 ? name : name.left(dot);
}

QString PreSegmentOf(const QString& segmentFile) {
    return segmentFile.left(segmentFile.size() - 4) + QStringLiteral("Pre") + segmentFile.right(4);
}

PicSegment MakeAVIFromPic(const SegmentContext& ctx, const QString& picture, const QString& segment,
                          double seconds, const std::optional<MediaFileInfo>& existing) {
    PicSegment s;
    s.pictureName = PictureNameOf(picture);
    s.bitmapCopy = ctx.gstrTempFilesDirectory + u'/' + s.pictureName + QStringLiteral(".bmp");
    s.fittedFrame = ctx.gstrTempFilesDirectory + u'/' + s.pictureName + QStringLiteral("-A.bmp");
    s.preSegment = PreSegmentOf(segment);
    // A BMP is read as it is; everything else (JPEG, GIF, PNG...) is copied to a bitmap first.
    s.needsBitmapCopy = lastFour(picture) != u".bmp";
    s.source = s.needsBitmapCopy ? s.bitmapCopy : picture;

    if (existing) {
        const qint64 have = existing->durationMs();
        const qint64 want = std::llround(seconds * 1000.0);
        if (have >= 0 && std::llabs(have - want) < 100 && existing->FrameSize == ctx.gstrVideoRes) {
            s.reused = true;
            return s;
        }
    }

    const QString ffmpeg = ShellQuote(ctx.ffmpeg);
    const QString rs = ctx.rateAndSize();
    s.lines << ffmpeg + u' ' + FfmpegDialect::LoopStillInput() + QStringLiteral(" -t ") +
                   SecondsAndMSToHHMMSSMS(seconds) + QStringLiteral(" -i ") +
                   ShellQuote(s.fittedFrame) + QStringLiteral(" -an ") + rs +
                   QStringLiteral(" -y ") + ShellQuote(s.preSegment);
    s.lines << ffmpeg + QStringLiteral(" -i ") + ShellQuote(s.preSegment) + u' ' + rs +
                   QStringLiteral(" -y ") + ShellQuote(segment);
    return s;
}

QString ConvertFromToWithTime(const SegmentContext& ctx, const QString& video,
                              const QString& segment, const QString& start, const QString& length) {
    const bool hasStart = !start.trimmed().isEmpty();
    const bool hasLength = !length.trimmed().isEmpty();
    QString line = ShellQuote(ctx.ffmpeg);
    if (hasLength)
        line += QStringLiteral(" -an");
    if (hasStart)
        line += QStringLiteral(" -ss ") + timeCodeOf(start);
    if (hasLength)
        line += QStringLiteral(" -t ") + timeCodeOf(length);
    return line + QStringLiteral(" -i ") + ShellQuote(video) + QStringLiteral(" -y ") +
           ShellQuote(segment);
}

QString ConvertFromTo(const SegmentContext& ctx, const QString& from, const QString& to) {
    return ShellQuote(ctx.ffmpeg) + QStringLiteral(" -i ") + ShellQuote(from) +
           QStringLiteral("  -y ") + ShellQuote(to);
}

} // namespace cq
