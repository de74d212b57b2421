#include "render/PieceLines.h"

#include "platform/ShellQuote.h"
#include "platform/TimeCode.h"
#include "render/BurnedCaptions.h"
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
            QStringLiteral("-frames:v %1 -fps_mode passthrough").arg(frames)};
}

QString captionsFilter(const RenderSegment& s) {
    return s.captions.isEmpty() ? QString() : u',' + BurnedCaptionsFilter(s.captionsScript);
}

qint64 videoStartMs(const RenderSegment& s) {
    return s.kind == SegmentKind::Video ? s.sourceStartMs : 0;
}

QString segmentInput(const QString& source, qint64 seekMs) {
    QString input;
    if (seekMs > 0)
        input += QStringLiteral("-ss ") + TimeCodeFromMs(seekMs) + u' ';
    return input + QStringLiteral("-i ") + ShellQuote(source);
}

// skipMs: how far into its input the video piece starts, when it shares one decoded input with
// pieces of the same video that start earlier.
QString segmentOutput(const RenderInputs& in, const RenderSegment& s, int inputIndex,
                      qint64 skipMs) {
    const QString rate = in.frameRate.ffmpegText();
    QString filter;
    QString timing;
    if (s.kind == SegmentKind::Video) {
        if (skipMs > 0)
            filter = QStringLiteral("setpts=PTS-STARTPTS,trim=start=%1,").arg(seconds(skipMs));
        // A video shorter than its time on screen holds its last picture.
        filter += QStringLiteral("setpts=PTS-STARTPTS,fps=") + rate + u',' +
                  fitFilter(in.frameSize) + QStringLiteral(",tpad=stop=-1:stop_mode=clone") +
                  captionsFilter(s);
        timing = QStringLiteral("-frames:v %1").arg(s.frames);
    } else {
        const StillHold hold = s.captions.isEmpty()
                                   ? in.container->stillHold(s.frames, in.frameRate)
                                   : realFramesHold(s.frames, in.frameRate);
        // An animated picture (GIF, APNG) decodes to many frames: a still shows its first.
        filter = QStringLiteral("trim=end_frame=1,") + fitFilter(in.frameSize) + u',' +
                 hold.filter + captionsFilter(s);
        timing = hold.outputOptions;
    }
    return QStringLiteral("-map %1:v -vf ").arg(inputIndex) + ShellQuote(filter) + u' ' + timing +
           QStringLiteral(" -r ") + rate + u' ' + in.container->pieceEncoderOptions(in.frameRate) +
           QStringLiteral(" -y ") + ShellQuote(s.partial);
}

} // namespace

QString PieceRunLine(const RenderInputs& in, const QList<RenderSegment>& segments) {
    // Pieces of one video share one input, decoded once from the earliest start among them;
    // every still picture is an input of its own.
    QList<int> inputOf;
    QList<qint64> seekOf;
    QStringList inputs;
    QHash<QString, int> videoInput;
    for (const RenderSegment& s : segments) {
        const bool video = s.kind == SegmentKind::Video;
        if (video && videoInput.contains(s.source)) {
            const int index = videoInput.value(s.source);
            seekOf[index] = std::min(seekOf[index], videoStartMs(s));
            inputOf << index;
            continue;
        }
        const int index = int(inputs.size());
        if (video)
            videoInput.insert(s.source, index);
        inputs << s.source;
        seekOf << videoStartMs(s);
        inputOf << index;
    }
    QString line = ShellQuote(in.ffmpeg.path) + QStringLiteral(" -nostdin -hide_banner -v error");
    for (qsizetype i = 0; i < inputs.size(); ++i)
        line += u' ' + segmentInput(inputs[i], seekOf[i]);
    for (qsizetype i = 0; i < segments.size(); ++i) {
        const int index = inputOf[i];
        line +=
            u' ' + segmentOutput(in, segments[i], index, videoStartMs(segments[i]) - seekOf[index]);
    }
    return line;
}

QString StandInLine(const RenderInputs& in, const RenderSegment& segment) {
    RenderSegment black = segment;
    black.kind = SegmentKind::Black;
    black.source = in.blackPicture;
    black.sourceStartMs = 0;
    return PieceRunLine(in, {black});
}

} // namespace cq
