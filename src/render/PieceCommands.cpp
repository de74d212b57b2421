#include "render/PieceCommands.h"

#include "platform/TimeCode.h"
#include "render/BurnedCaptions.h"
#include "render/FfmpegInputs.h"
#include "render/RenderContainer.h"

#include <QHash>

namespace cq {

namespace {

// Scales the item into the output frame's own shape and pads with black, so that a picture
// keeps its shape at every output size, 4:3 or not.
QString fitFilter(const QSize& size) {
    return QStringLiteral("scale=%1:%2:force_original_aspect_ratio=decrease:force_divisible_by=2,"
                          "pad=%1:%2:(ow-iw)/2:(oh-ih)/2:black,setsar=1,format=yuv420p")
        .arg(size.width())
        .arg(size.height());
}

QString seconds(qint64 ms) {
    return QString::number(double(ms) / 1000.0, 'f', 3);
}

// A still under a cue is held in real frames, each one drawn with the captions it shows: the
// container's cheap hold repeats one encoded frame, which could not show a cue appear.
StillHold realFramesHold(qint64 frames, const FrameRate& rate) {
    return {QStringLiteral("loop=loop=%1:size=1,settb=1/(%2),setpts=N")
                .arg(frames - 1)
                .arg(rate.ffmpegText()),
            {QStringLiteral("-frames:v"), QString::number(frames), QStringLiteral("-fps_mode"),
             QStringLiteral("passthrough")}};
}

QString captionsFilter(const RenderSegment& s) {
    return s.captions.isEmpty() ? QString() : u',' + BurnedCaptionsFilter(s.captionsScript);
}

// skipMs: how far into its input the video piece starts, when it shares one decoded input with
// pieces of the same video that start earlier.
QStringList segmentOutput(const RenderInputs& in, const RenderSegment& s, int input,
                          qint64 skipMs) {
    const QString rate = in.frameRate.ffmpegText();
    QString filter;
    QStringList timing;
    if (s.kind == SegmentKind::Video) {
        if (skipMs > 0)
            filter = QStringLiteral("setpts=PTS-STARTPTS,trim=start=%1,").arg(seconds(skipMs));
        // A video shorter than its time on screen holds its last picture.
        filter += QStringLiteral("setpts=PTS-STARTPTS,fps=") + rate + u',' +
                  fitFilter(in.frameSize) + QStringLiteral(",tpad=stop=-1:stop_mode=clone") +
                  captionsFilter(s);
        timing = {QStringLiteral("-frames:v"), QString::number(s.frames)};
    } else {
        const StillHold hold = s.captions.isEmpty()
                                   ? in.container->stillHold(s.frames, in.frameRate)
                                   : realFramesHold(s.frames, in.frameRate);
        // An animated picture (GIF, APNG) decodes to many frames: a still shows its first.
        filter = QStringLiteral("trim=end_frame=1,") + fitFilter(in.frameSize) + u',' +
                 hold.filter + captionsFilter(s);
        timing = hold.outputOptions;
    }
    return QStringList{QStringLiteral("-map"), FfmpegInputs::stream(input, 'v'),
                       QStringLiteral("-vf"), filter} +
           timing + QStringList{QStringLiteral("-r"), rate} +
           in.container->pieceEncoderOptions(in.frameRate) +
           QStringList{QStringLiteral("-y"), s.partial};
}

} // namespace

ToolCommand PieceRunCommand(const RenderInputs& in, const QList<RenderSegment>& segments) {
    // Pieces of one video share one input, decoded once from the earliest start among them;
    // every still picture is an input of its own.
    QHash<QString, qint64> videoSeek;
    for (const RenderSegment& s : segments)
        if (s.kind == SegmentKind::Video)
            videoSeek[s.source] = videoSeek.contains(s.source)
                                      ? std::min(videoSeek.value(s.source), s.sourceStartMs)
                                      : s.sourceStartMs;
    FfmpegInputs inputs;
    QHash<QString, int> videoInput;
    QList<int> inputOf;
    for (const RenderSegment& s : segments) {
        const bool video = s.kind == SegmentKind::Video;
        if (video && videoInput.contains(s.source)) {
            inputOf << videoInput.value(s.source);
            continue;
        }
        const qint64 seekMs = video ? videoSeek.value(s.source) : 0;
        const int input = inputs.add(
            s.source, seekMs > 0 ? QStringList{QStringLiteral("-ss"), TimeCodeFromMs(seekMs)}
                                 : QStringList{});
        if (video)
            videoInput.insert(s.source, input);
        inputOf << input;
    }
    ToolCommand command = inputs.command(in.ffmpeg.path);
    for (qsizetype i = 0; i < segments.size(); ++i) {
        const RenderSegment& s = segments[i];
        const qint64 skipMs =
            s.kind == SegmentKind::Video ? s.sourceStartMs - videoSeek.value(s.source) : 0;
        command.arguments << segmentOutput(in, s, inputOf[i], skipMs);
    }
    return command;
}

ToolCommand StandInCommand(const RenderInputs& in, const RenderSegment& segment) {
    RenderSegment black = segment;
    black.kind = SegmentKind::Black;
    black.source = in.blackPicture;
    black.sourceStartMs = 0;
    return PieceRunCommand(in, {black});
}

} // namespace cq
