#include "app/StudioRender.h"

#include "platform/ToolLocator.h"
#include "render/Mp4Container.h"
#include "studio/AppPaths.h"
#include "studio/FinalMix.h"
#include "studio/StudioSettings.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <numeric>

namespace cq {

namespace {
constexpr int kMinSide = 16;
constexpr int kMaxSide = 4096;
QString OutputFormatProblem(const QString& output) {
    return QStringLiteral("\"%1\" names no format a render makes; end its name in .avi or .mp4.")
        .arg(output);
}

} // namespace

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

FrameRate ParseFrameRate(const QString& gstrFrameRate) {
    // A whole or decimal number of frames per second, or a fraction such as 24000/1001.
    static const QRegularExpression plain(QRegularExpression::anchoredPattern(
        QStringLiteral("([0-9]{1,3})(?:\\.([0-9]{1,3}))?|([0-9]{1,6})/([0-9]{1,5})")));
    const QString text = gstrFrameRate.trimmed();
    const QRegularExpressionMatch m = plain.match(text);
    if (text == u"29.97" || !m.hasMatch())
        return FrameRate::ntsc();
    qint64 num = 0;
    qint64 den = 1;
    if (m.hasCaptured(3)) {
        num = m.captured(3).toLongLong();
        den = m.captured(4).toLongLong();
    } else {
        const QString fraction = m.captured(2);
        for (qsizetype i = 0; i < fraction.size(); ++i)
            den *= 10;
        num = m.captured(1).toLongLong() * den + fraction.toLongLong();
    }
    if (num <= 0 || den <= 0)
        return FrameRate::ntsc();
    const qint64 common = std::gcd(num, den);
    return {num / common, den / common};
}

std::optional<RenderFormat> RenderFormatOfFile(const QString& output) {
    const QString suffix = QFileInfo(output).suffix().toLower();
    if (suffix == u"avi")
        return RenderFormat::Avi;
    if (suffix == u"mp4")
        return RenderFormat::Mp4;
    return std::nullopt;
}

QString LocateFfprobe(const AppPaths& paths) {
    return LocateFfprobeBesideFfmpeg(paths.gstrFFMPEGFileSpec).path;
}

RenderRequest StudioRenderRequest(const AppPaths& paths, const StudioSettings& studio,
                                  const QList<TimelineEvent>& rows, const QString& voiceFile,
                                  qint64 recordingMs, const QString& output) {
    RenderRequest request;
    RenderInputs& in = request.inputs;
    in.frameSize = ParseFrameSize(studio.gstrVideoRes);
    if (!in.frameSize.isValid())
        request.problem = FrameSizeProblem(studio.gstrVideoRes);
    in.frameRate = ParseFrameRate(studio.gstrFrameRate);
    in.rows = rows;
    in.recordingMs = recordingMs;
    in.voiceFile = voiceFile;
    in.workFolder = paths.gstrTempFilesDirectory;
    in.blackPicture = paths.blackPictureFileSpec;
    in.ffmpeg = LocateFfmpeg(paths.gstrFFMPEGFileSpec);
    in.ffprobe = LocateFfprobe(paths);
    in.keepVideoSound = studio.keepVideoSound;
    in.writtenFilesRecord = paths.writtenFilesRecordFileSpec;
    in.voice = {studio.evenVoice, studio.reduceNoise};
    RenderFormat format = studio.renderFormat;
    if (!output.isEmpty()) {
        const std::optional<RenderFormat> asked = RenderFormatOfFile(output);
        // A take without events makes sound only, which may also go to an .mp3.
        const bool soundOnly = rows.isEmpty() && QFileInfo(output).suffix().toLower() == u"mp3";
        if (asked)
            format = *asked;
        else if (!soundOnly && request.ok())
            request.problem = OutputFormatProblem(output);
    }
    in.container = format == RenderFormat::Mp4 ? MakeMp4Container() : MakeAviContainer();
    in.output = !output.isEmpty() ? output
                : rows.isEmpty()  ? paths.gstrFinalMixMP3FileSpec
                                  : FinalMixFileSpec(paths, format);
    return request;
}

} // namespace cq
