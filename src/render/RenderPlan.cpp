#include "render/RenderPlan.h"

#include "platform/ShellQuote.h"
#include "platform/TimeCode.h"
#include "render/FfmpegDialect.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <cmath>

namespace cq {

namespace {

QString head(const QString& ffmpeg) {
    return ShellQuote(ffmpeg) + QStringLiteral(" -nostdin -hide_banner -v error");
}

// Scales the item into the output frame's own shape and pads with black, so that a picture
// keeps its shape at every output size, 4:3 or not.
QString fitFilter(const QSize& size) {
    return QStringLiteral("scale=%1:%2:force_original_aspect_ratio=decrease:force_divisible_by=2,"
                          "pad=%1:%2:(ow-iw)/2:(oh-ih)/2:black,setsar=1,format=yuv420p")
        .arg(size.width())
        .arg(size.height());
}

qint64 frameAt(qint64 ms, double fps) {
    return std::llround(double(ms) * fps / 1000.0);
}

QString seconds(qint64 ms) {
    return QString::number(double(ms) / 1000.0, 'f', 3);
}

qint64 videoStartMs(const RenderSegment& s) {
    return s.kind == u"Video" ? std::max<qint64>(0, s.begVideoAtMs) : 0;
}

// A still shows one picture for all its frames, so only its first frame and its last three are
// encoded; the frames between are empty chunks, which AVI players and ffmpeg read as the picture
// held. The encoder then spends nothing on frames that cannot differ. The last three frames are
// real because ffmpeg 5.1, converting a video to a constant rate, repeats its last frame as
// often as the median of the last three gaps: a gap there would lengthen the converted video.
QString stillFramesKept(qint64 frames) {
    return QStringLiteral("select=lt(n\\,1)+gt(n\\,%1)").arg(frames - 4);
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
    const QString rate = FfmpegDialect::FrameRate(in.gstrFrameRate);
    const QSize size = FfmpegDialect::ParseFrameSize(in.gstrVideoRes);
    QString filter;
    if (s.kind == u"Video") {
        if (skipMs > 0)
            filter = QStringLiteral("setpts=PTS-STARTPTS,trim=start=%1,").arg(seconds(skipMs));
        // A video shorter than its time on screen holds its last picture.
        filter += QStringLiteral("setpts=PTS-STARTPTS,fps=") + rate + u',' + fitFilter(size) +
                  QStringLiteral(",tpad=stop=-1:stop_mode=clone");
    } else {
        // The picture is decoded and scaled once, then its one frame repeated: looping the
        // input would decode a large picture for every frame. The loop ends by itself; ffmpeg
        // 5.1 can spin for ever when several endless loops share a run.
        filter = fitFilter(size) +
                 QStringLiteral(",loop=loop=%1:size=1,settb=1/(").arg(s.frames - 1) + rate +
                 QStringLiteral("),setpts=N,") + stillFramesKept(s.frames);
    }
    // Passthrough keeps the still's gaps as gaps; the AVI muxer fills each with an empty chunk.
    // Its frames count in the output's own time base, so no frame's time is rounded away.
    const QString timing =
        s.kind == u"Video" ? QString() : QStringLiteral(" -fps_mode passthrough");
    return QStringLiteral("-map %1:v -vf ").arg(inputIndex) + ShellQuote(filter) +
           QStringLiteral(" -frames:v ") + QString::number(s.frames) + timing +
           QStringLiteral(" -r ") + rate + u' ' + FfmpegDialect::PieceEncoderOptions() +
           QStringLiteral(" -y ") + ShellQuote(s.partial);
}

QString validate(const RenderInputs& in) {
    if (in.recordingMs <= 0)
        return QStringLiteral("The recording \"%1\" has no length; there is nothing to render.")
            .arg(in.voiceFile);
    if (!in.rows.isEmpty() && !FfmpegDialect::ParseFrameSize(in.gstrVideoRes).isValid())
        return FfmpegDialect::FrameSizeProblem(in.gstrVideoRes);
    return {};
}

struct Item {
    const EventRow* row;
    qint64 ms;
};

// Only rows that put something on screen start a stretch. A row that shows nothing (sound, an
// unknown file) leaves the previous item on screen, so no later item moves.
QList<Item> visualItems(const RenderInputs& in) {
    QList<Item> items;
    for (const EventRow& row : in.rows) {
        const qint64 ms = row.timeMs();
        if (!IsVisualMediaType(row.mediaType) || row.fileSpec.isEmpty() || ms < 0 ||
            ms >= in.recordingMs)
            continue;
        items.push_back({&row, ms});
    }
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& a, const Item& b) { return a.ms < b.ms; });
    return items;
}

// Names the piece after everything it is made from, so that the same item at the same length
// finds its piece again even when items before it were added or removed.
void nameAndLine(const RenderInputs& in, RenderSegment& s) {
    s.partial = QStringLiteral("PIECE");
    s.recipe = SegmentLine(in, s);
    const QByteArray hash =
        QCryptographicHash::hash(s.recipe.toUtf8(), QCryptographicHash::Sha1).toHex().left(20);
    s.piece = in.workFolder + u'/' + QString::fromLatin1(hash) + QStringLiteral(".avi");
    s.partial = s.piece + QStringLiteral(".part");
    s.line = SegmentLine(in, s);
    RenderSegment black = s;
    black.kind = QStringLiteral("Black");
    black.source = in.blackPicture;
    black.begVideoAtMs = -1;
    s.blackLine = SegmentLine(in, black);
}

void addSegments(const RenderInputs& in, RenderPlan& plan) {
    const double fps = FfmpegDialect::FramesPerSecond(in.gstrFrameRate);
    plan.totalFrames = frameAt(in.recordingMs, fps);
    auto add = [&](const QString& kind, const QString& source, qint64 startMs, qint64 endMs,
                   qint64 begMs, int count) {
        const qint64 first = frameAt(startMs, fps);
        const qint64 frames = std::min(frameAt(endMs, fps), plan.totalFrames) - first;
        if (frames <= 0)
            return; // shorter than one frame: the next item already covers it
        RenderSegment s;
        s.number = int(plan.segments.size()) + 1;
        s.kind = kind;
        s.source = source;
        s.startMs = startMs;
        s.lengthMs = endMs - startMs;
        s.firstFrame = first;
        s.frames = frames;
        s.begVideoAtMs = begMs;
        s.eventCount = count;
        nameAndLine(in, s);
        plan.segments.push_back(s);
    };
    const QList<Item> items = visualItems(in);
    const qint64 leadInEnd = items.isEmpty() ? in.recordingMs : items.first().ms;
    if (leadInEnd > 0)
        add(QStringLiteral("Black"), in.blackPicture, 0, leadInEnd, -1, 0);
    for (qsizetype i = 0; i < items.size(); ++i) {
        const EventRow& row = *items[i].row;
        const qint64 end = i + 1 < items.size() ? items[i + 1].ms : in.recordingMs;
        if (end <= items[i].ms)
            continue;
        add(row.mediaType, row.fileSpec, items[i].ms, end,
            row.mediaType == u"Video" ? std::max<qint64>(0, row.begVideoAtMs()) : -1,
            row.mediaCount);
    }
}

QString joinListText(const RenderPlan& plan) {
    QString text = QStringLiteral("ffconcat version 1.0\n");
    for (const RenderSegment& s : plan.segments)
        text += QStringLiteral("file ") + ShellQuote(s.piece) + u'\n';
    return text;
}

// The sound of each kept video, delayed to its place, mixed under the voice; the voice alone
// when no video keeps its sound. The voice sets the length.
QString soundInputsAndMap(const RenderInputs& in, const RenderPlan& plan) {
    QString inputs;
    QStringList chains;
    int inputIndex = 2;
    for (const RenderSegment& s : plan.segments) {
        if (s.kind != u"Video" || !in.videosWithSound.contains(s.source))
            continue;
        if (s.begVideoAtMs > 0)
            inputs += QStringLiteral(" -ss ") + TimeCodeFromMs(s.begVideoAtMs);
        inputs += QStringLiteral(" -t ") + seconds(s.lengthMs) + QStringLiteral(" -i ") +
                  ShellQuote(s.source);
        chains << QStringLiteral("[%1:a]aresample=44100,adelay=%2:all=1[s%1]")
                      .arg(inputIndex)
                      .arg(s.startMs);
        ++inputIndex;
    }
    if (chains.isEmpty())
        return inputs + QStringLiteral(" -map 0:v -map 1:a");
    QString graph = chains.join(u';') + QStringLiteral(";[1:a]");
    for (int k = 2; k < inputIndex; ++k)
        graph += QStringLiteral("[s%1]").arg(k);
    // duration=first: the voice sets the length; normalize=0 keeps the voice's level.
    graph += QStringLiteral("amix=inputs=%1:duration=first:normalize=0[mix]").arg(inputIndex - 1);
    return inputs + QStringLiteral(" -filter_complex ") + ShellQuote(graph) +
           QStringLiteral(" -map 0:v -map '[mix]'");
}

// The pieces are already in the result's codec, size and rate, starting on a key frame: they
// are joined by stream copy, and only the sound is encoded.
QString finalMixLine(const RenderInputs& in, const RenderPlan& plan) {
    return head(in.ffmpeg) + QStringLiteral(" -progress pipe:1 -nostats ") +
           FfmpegDialect::JoinedInputFormat() + QStringLiteral(" -i ") +
           ShellQuote(plan.joinListFile) + QStringLiteral(" -i ") + ShellQuote(in.voiceFile) +
           soundInputsAndMap(in, plan) + u' ' + FfmpegDialect::FinalEncoderOptions() +
           QStringLiteral(" -y ") + ShellQuote(plan.partialOutput);
}

} // namespace

bool IsVisualMediaType(const QString& t) {
    return t == u"Pictures" || t == u"Text" || t == u"Both" || t == u"Video";
}

QStringList RenderPlan::distinctPieces() const {
    QStringList pieces;
    QSet<QString> seen;
    for (const RenderSegment& s : segments)
        if (!seen.contains(s.piece)) {
            seen.insert(s.piece);
            pieces << s.piece;
        }
    return pieces;
}

QString PartialOutputOf(const QString& output, const QString& tag) {
    const QFileInfo fi(output);
    const QString suffix = fi.suffix();
    QString base = fi.fileName();
    if (!suffix.isEmpty())
        base.chop(suffix.size() + 1);
    return fi.path() + u'/' + base + QStringLiteral(".rendering-") + tag +
           (suffix.isEmpty() ? QString() : u'.' + suffix);
}

QString SegmentLine(const RenderInputs& in, const RenderSegment& segment) {
    return BatchLine(in, {segment});
}

QString BatchLine(const RenderInputs& in, const QList<RenderSegment>& segments) {
    // Pieces of one video share one input, decoded once from the earliest start among them;
    // every still picture is an input of its own.
    QList<int> inputOf;
    QList<qint64> seekOf;
    QStringList inputs;
    QHash<QString, int> videoInput;
    for (const RenderSegment& s : segments) {
        if (s.kind == u"Video" && videoInput.contains(s.source)) {
            const int index = videoInput.value(s.source);
            seekOf[index] = std::min(seekOf[index], videoStartMs(s));
            inputOf << index;
            continue;
        }
        const int index = int(inputs.size());
        if (s.kind == u"Video")
            videoInput.insert(s.source, index);
        inputs << s.source;
        seekOf << videoStartMs(s);
        inputOf << index;
    }
    QString line = head(in.ffmpeg);
    for (qsizetype i = 0; i < inputs.size(); ++i)
        line += u' ' + segmentInput(inputs[i], seekOf[i]);
    for (qsizetype i = 0; i < segments.size(); ++i) {
        const int index = inputOf[i];
        line +=
            u' ' + segmentOutput(in, segments[i], index, videoStartMs(segments[i]) - seekOf[index]);
    }
    return line;
}

RenderPlan BuildRenderPlan(const RenderInputs& in) {
    RenderPlan plan;
    plan.output = in.output;
    plan.partialOutput = in.partialOutput.isEmpty()
                             ? PartialOutputOf(in.output, QStringLiteral("0"))
                             : in.partialOutput;
    plan.targetMs = in.recordingMs;
    plan.error = validate(in);
    if (!plan.ok())
        return plan;
    if (in.rows.isEmpty()) {
        plan.audioOnly = true;
        plan.finalLine = head(in.ffmpeg) + QStringLiteral(" -progress pipe:1 -nostats -i ") +
                         ShellQuote(in.voiceFile) + QStringLiteral(" -y ") +
                         ShellQuote(plan.partialOutput);
        return plan;
    }
    addSegments(in, plan);
    plan.joinListFile = in.workFolder + QStringLiteral("/FinalVideo.txt");
    plan.joinList = joinListText(plan);
    plan.finalLine = finalMixLine(in, plan);
    return plan;
}

} // namespace cq
