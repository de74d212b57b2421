#include "render/RenderPlan.h"

#include "captions/SubtitleFiles.h"
#include "platform/RegularFiles.h"
#include "platform/TimeCode.h"
#include "render/FfmpegInputs.h"

#include <QFileInfo>

#include <algorithm>

namespace cq {

namespace {

QString seconds(qint64 ms) {
    return QString::number(double(ms) / 1000.0, 'f', 3);
}

QString validate(const RenderInputs& in) {
    if (in.recordingMs <= 0)
        return QStringLiteral("The recording \"%1\" has no length; there is nothing to render.")
            .arg(in.voiceFile);
    if (!in.rows.isEmpty() && (in.frameSize.isEmpty() || !in.frameRate.isValid()))
        return QStringLiteral("The render was given no usable frame size or rate.");
    return {};
}

struct Item {
    const TimelineEvent* row;
    int rowNumber; // in the grid, from 1
    SegmentKind kind;
    qint64 ms;
};

// Only rows that put something on screen start a stretch. A row that shows nothing (sound, an
// unknown file) leaves the previous item on screen, so no later item moves.
QList<Item> visualItems(const RenderInputs& in) {
    QList<Item> items;
    int rowNumber = 0;
    for (const TimelineEvent& row : in.rows) {
        ++rowNumber;
        const qint64 ms = row.atMs;
        const std::optional<SegmentKind> kind = SegmentKindOfMediaType(row.kind);
        if (!kind || row.file.isEmpty() || ms < 0 || ms >= in.recordingMs)
            continue;
        items.push_back({&row, rowNumber, *kind, ms});
    }
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& a, const Item& b) { return a.ms < b.ms; });
    return items;
}

class SegmentAdder {
public:
    SegmentAdder(const RenderInputs& in, const RenderSpace& space, RenderPlan& plan)
        : m_in(in), m_space(space), m_plan(plan) {
        m_plan.totalFrames = in.frameRate.frameAt(in.recordingMs);
    }

    // problem: why the item cannot be shown, known before any tool runs; empty when it can.
    void add(SegmentKind kind, const QString& source, qint64 startMs, qint64 endMs,
             qint64 sourceStartMs, const QString& problem = {}) {
        const qint64 first = m_in.frameRate.frameAt(startMs);
        const qint64 end = std::min(m_in.frameRate.frameAt(endMs), m_plan.totalFrames);
        if (end <= first)
            return; // shorter than one frame: the next item already covers it
        // A still is cut where a burned-in cue appears or goes, so only its stretches under a
        // cue need real frames; a video stays one piece with its sound in one stretch.
        QList<qint64> cuts;
        if (m_in.burnCaptions && kind != SegmentKind::Video)
            cuts = CueEdgesWithin(m_in.captions, m_in.frameRate, first, end);
        cuts << end;
        qint64 from = first;
        for (qint64 to : cuts) {
            addFrames(kind, source, from == first ? startMs : msOfFrame(from),
                      to == end ? endMs : msOfFrame(to), sourceStartMs, from, to - from);
            m_plan.segments.last().sourceProblem += problem;
            from = to;
        }
    }

private:
    qint64 msOfFrame(qint64 frame) const {
        return (frame * 1000 * m_in.frameRate.den + m_in.frameRate.num / 2) / m_in.frameRate.num;
    }

    void addFrames(SegmentKind kind, const QString& source, qint64 startMs, qint64 endMs,
                   qint64 sourceStartMs, qint64 first, qint64 frames) {
        RenderSegment s;
        s.number = int(m_plan.segments.size()) + 1;
        s.kind = kind;
        s.source = source;
        s.startMs = startMs;
        s.lengthMs = endMs - startMs;
        s.firstFrame = first;
        s.frames = frames;
        s.sourceStartMs = kind == SegmentKind::Video ? sourceStartMs : 0;
        s.recipe =
            PieceRecipe::of(kind, source, s.sourceStartMs, frames, m_in.frameSize, m_in.frameRate,
                            m_in.container->pieceEncoderOptions(m_in.frameRate).join(u' '));
        if (m_in.burnCaptions)
            s.captions = PieceCuesOf(m_in.captions, m_in.frameRate, first, frames);
        s.recipe.captions = PieceCuesRecipe(s.captions);
        s.piece = m_space.folder + u'/' + s.recipe.key() + u'.' + m_in.container->suffix();
        s.partial = s.piece + QStringLiteral(".part");
        if (!s.captions.isEmpty())
            s.captionsScript = m_space.folder + u'/' + s.recipe.key() + QStringLiteral(".ass");
        s.sourceProblem = SourceProblem(source);
        m_plan.segments.push_back(s);
    }

    const RenderInputs& m_in;
    const RenderSpace& m_space;
    RenderPlan& m_plan;
};

QString seconds1(qint64 ms) {
    return QString::number(double(ms) / 1000.0, 'f', 1);
}

// ffmpeg would make no frame of a video cut from past its end.
QString startsPastItsEnd(const Item& item, const QHash<QString, qint64>& videoLengths) {
    const QString& file = item.row->file;
    const qint64 startMs = item.row->startMs.value_or(0);
    if (item.kind != SegmentKind::Video || !videoLengths.contains(file) ||
        startMs < videoLengths.value(file))
        return {};
    return QStringLiteral("\"%1\" (row %2) starts at %3 s, after the video's end at %4 s.")
        .arg(QFileInfo(file).fileName())
        .arg(item.rowNumber)
        .arg(seconds1(startMs), seconds1(videoLengths.value(file)));
}

void addSegments(const RenderInputs& in, const RenderSpace& space, RenderPlan& plan,
                 const QHash<QString, qint64>& videoLengths) {
    SegmentAdder adder(in, space, plan);
    const QList<Item> items = visualItems(in);
    const qint64 leadInEnd = items.isEmpty() ? in.recordingMs : items.first().ms;
    if (leadInEnd > 0)
        adder.add(SegmentKind::Black, in.blackPicture, 0, leadInEnd, 0);
    for (qsizetype i = 0; i < items.size(); ++i) {
        const TimelineEvent& row = *items[i].row;
        const qint64 end = i + 1 < items.size() ? items[i + 1].ms : in.recordingMs;
        if (end > items[i].ms)
            adder.add(items[i].kind, row.file, items[i].ms, end, row.startMs.value_or(0),
                      startsPastItsEnd(items[i], videoLengths));
    }
}

// The time of a frame in whole microseconds, rounded to the nearest.
qint64 frameMicroseconds(qint64 frame, const FrameRate& rate) {
    return (frame * rate.den * 2000000 + rate.num) / (2 * rate.num);
}

// Pieces are named by the list's own folder, where they all are: ffmpeg reads the list line by
// line, so a full path could be broken by a line end in a folder's name; a piece's own name is
// hexadecimal digits and a suffix.
// Each piece's duration is given, in microseconds, as the step between the rounded times of its
// first frame and the next piece's: the join places each piece at the sum of the durations
// before it, so the rounding never adds up, and it need not read a duration that a container
// keeps only to the millisecond.
QString joinListText(const RenderPlan& plan, const FrameRate& rate) {
    QString text = QStringLiteral("ffconcat version 1.0\n");
    for (const RenderSegment& s : plan.segments) {
        const qint64 us = frameMicroseconds(s.firstFrame + s.frames, rate) -
                          frameMicroseconds(s.firstFrame, rate);
        text += QStringLiteral("file ") + QFileInfo(s.piece).fileName() +
                QStringLiteral("\nduration %1.%2\n")
                    .arg(us / 1000000)
                    .arg(us % 1000000, 6, 10, QChar(u'0'));
    }
    return text;
}

// The voice's own filters, when it goes to the result alone.
QStringList voiceFilterOption(const QString& voiceFilter) {
    return voiceFilter.isEmpty() ? QStringList{} : QStringList{QStringLiteral("-af"), voiceFilter};
}

// The sound of each kept video, delayed to its place, mixed under the voice; the voice alone
// when no video keeps its sound. The voice sets the length. Adds the videos' inputs, returns
// the maps and filters of the result's streams.
QStringList soundMaps(const RenderPlan& plan, const QSet<QString>& videosWithSound,
                      const QString& voiceFilter, int pictures, int voice, FfmpegInputs& inputs) {
    const QStringList pictureMap{QStringLiteral("-map"),
                                 FfmpegInputs::stream(pictures, 'v')};
    QStringList chains;
    QString mixed;
    for (const RenderSegment& s : plan.segments) {
        if (s.kind != SegmentKind::Video || !videosWithSound.contains(s.source))
            continue;
        QStringList options;
        if (s.sourceStartMs > 0)
            options << QStringLiteral("-ss") << TimeCodeFromMs(s.sourceStartMs);
        options << QStringLiteral("-t") << seconds(s.lengthMs);
        const int input = inputs.add(s.source, options);
        chains
            << FfmpegInputs::label(input, 'a') +
                   QStringLiteral("aresample=44100,adelay=%1:all=1[s%2]").arg(s.startMs).arg(input);
        mixed += QStringLiteral("[s%1]").arg(input);
    }
    if (chains.isEmpty())
        return pictureMap +
               QStringList{QStringLiteral("-map"), FfmpegInputs::stream(voice, 'a')} +
               voiceFilterOption(voiceFilter);
    QString graph = chains.join(u';') + u';';
    QString voiceStream = FfmpegInputs::label(voice, 'a');
    if (!voiceFilter.isEmpty()) {
        graph += voiceStream + voiceFilter + QStringLiteral("[voice];");
        voiceStream = QStringLiteral("[voice]");
    }
    // duration=first: the voice sets the length; normalize=0 keeps the voice's level.
    graph +=
        voiceStream + mixed +
        QStringLiteral("amix=inputs=%1:duration=first:normalize=0[mix]").arg(chains.size() + 1);
    return QStringList{QStringLiteral("-filter_complex"), graph} + pictureMap +
           QStringList{QStringLiteral("-map"), QStringLiteral("[mix]")};
}

// The joined pieces, read back in order from the plan's own concat list, and the sound; the
// cue track, when the result has one.
struct JoinInputs {
    FfmpegInputs inputs;
    int pictures = -1;
    int sound = -1;
    QStringList cueTrack; // the map and the encoder options of the cue track; empty for none
};

JoinInputs joinInputs(const RenderInputs& in, const RenderPlan& plan, const QString& sound) {
    JoinInputs join;
    join.pictures =
        join.inputs.add(plan.joinListFile, {QStringLiteral("-f"), QStringLiteral("concat"),
                                            QStringLiteral("-safe"), QStringLiteral("0")});
    join.sound = join.inputs.add(sound);
    if (!plan.captionTrackFile.isEmpty())
        join.cueTrack =
            QStringList{QStringLiteral("-map"),
                        FfmpegInputs::stream(join.inputs.add(plan.captionTrackFile), 's')} +
            in.container->captionTrackOptions();
    return join;
}

// ffmpeg reporting its progress on its standard output, then the outputs after the inputs.
ToolCommand mixCommand(const QString& ffmpeg, const FfmpegInputs& inputs,
                       const QStringList& outputs, const QString& output) {
    ToolCommand command = inputs.command(
        ffmpeg, {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-progress"),
                 QStringLiteral("pipe:1"), QStringLiteral("-nostats")});
    command.arguments << outputs << QStringLiteral("-y") << output;
    return command;
}

// The pieces are already in the result's codec, size and rate, starting on a key frame: they
// are joined by stream copy, and only the sound is encoded.
ToolCommand videoMixCommand(const RenderInputs& in, const RenderPlan& plan,
                            const QSet<QString>& videosWithSound, const QString& voiceFilter) {
    JoinInputs join = joinInputs(in, plan, in.voiceFile);
    const QStringList maps =
        soundMaps(plan, videosWithSound, voiceFilter, join.pictures, join.sound, join.inputs);
    return mixCommand(in.ffmpeg.path, join.inputs,
                      maps + join.cueTrack + in.container->resultEncoderOptions(),
                      plan.partialOutput);
}

// The cues as the result's own subtitle track, cut to the voice: a track longer than the voice
// would lengthen the result.
QByteArray captionTrackOf(const RenderInputs& in) {
    if (!in.writeCaptions || in.container->captionTrackOptions().isEmpty())
        return {};
    CaptionCues cues;
    for (CaptionCue cue : in.captions) {
        cue.endMs = std::min(cue.endMs, in.recordingMs);
        if (cue.endMs > cue.startMs)
            cues << cue;
    }
    return WriteSrt(cues);
}

} // namespace

ToolCommand FinalMixCommand(const RenderInputs& in, const RenderPlan& plan,
                            const QSet<QString>& videosWithSound, const QString& voiceFilter) {
    if (!plan.audioOnly)
        return videoMixCommand(in, plan, videosWithSound, voiceFilter);
    FfmpegInputs inputs;
    inputs.add(in.voiceFile);
    return mixCommand(in.ffmpeg.path, inputs, voiceFilterOption(voiceFilter), plan.partialOutput);
}

ToolCommand CopyJoinCommand(const RenderInputs& in, const RenderPlan& plan,
                            const QString& voiceSound) {
    const JoinInputs join = joinInputs(in, plan, voiceSound);
    const QStringList maps{QStringLiteral("-map"), FfmpegInputs::stream(join.pictures, 'v'),
                           QStringLiteral("-map"), FfmpegInputs::stream(join.sound, 'a')};
    return mixCommand(in.ffmpeg.path, join.inputs,
                      maps + join.cueTrack + in.container->copyResultOptions(), plan.partialOutput);
}

bool MixesVideoSound(const RenderPlan& plan, const QSet<QString>& videosWithSound) {
    return std::any_of(plan.segments.begin(), plan.segments.end(), [&](const RenderSegment& s) {
        return s.kind == SegmentKind::Video && videosWithSound.contains(s.source);
    });
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

QString SourceProblem(const QString& file) {
    const FileKind kind = KindOfFile(file);
    if (kind == FileKind::Regular || kind == FileKind::Missing)
        return {};
    return QStringLiteral("\"%1\" is %2, not a regular file, so no tool was given it")
        .arg(file, WhyNotARegularFile(file));
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

RenderPlan BuildRenderPlan(const RenderInputs& in, const RenderSpace& space,
                           const QSet<QString>& videosWithSound,
                           const QHash<QString, qint64>& videoLengths) {
    RenderPlan plan;
    plan.partialOutput = space.partialOutput;
    plan.targetMs = in.recordingMs;
    plan.error = validate(in);
    if (!plan.ok())
        return plan;
    if (in.rows.isEmpty()) {
        plan.audioOnly = true;
        plan.finalCommand = FinalMixCommand(in, plan, videosWithSound, {});
        return plan;
    }
    addSegments(in, space, plan, videoLengths);
    plan.joinListFile = space.folder + QStringLiteral("/FinalVideo.txt");
    plan.joinList = joinListText(plan, in.frameRate);
    plan.captionTrack = captionTrackOf(in);
    if (!plan.captionTrack.isEmpty())
        plan.captionTrackFile = space.folder + QStringLiteral("/Captions.srt");
    plan.finalCommand = FinalMixCommand(in, plan, videosWithSound, {});
    return plan;
}

} // namespace cq
