#include "render/RenderPlan.h"

#include "platform/ShellQuote.h"
#include "platform/TimeCode.h"
#include "render/FfmpegDialect.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace cq {

namespace {

QString head(const QString& ffmpeg) {
    return ShellQuote(ffmpeg) + QStringLiteral(" -nostdin -hide_banner -v error");
}

// Scales the item into the output frame as if it were first centred on a black 4:3 canvas,
// then pads with black: the picture keeps its shape on every 4:3 size.
QString fitFilter(const QSize& size) {
    return QStringLiteral("scale=w='trunc(%1*iw/max(iw\\,ih*4/3)/2)*2'"
                          ":h='trunc(%2*ih/max(ih\\,iw*3/4)/2)*2',"
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

} // namespace

bool IsVisualMediaType(const QString& t) {
    return t == u"Pictures" || t == u"Text" || t == u"Both" || t == u"Video";
}

QString PartialOutputOf(const QString& output) {
    const QFileInfo fi(output);
    const QString suffix = fi.suffix();
    QString base = fi.fileName();
    if (!suffix.isEmpty())
        base.chop(suffix.size() + 1);
    return fi.path() + u'/' + base + QStringLiteral(".rendering") +
           (suffix.isEmpty() ? QString() : u'.' + suffix);
}

namespace {

QString segmentInput(const RenderSegment& s) {
    QString input;
    if (s.kind == u"Video" && s.begVideoAtMs > 0)
        input += QStringLiteral("-ss ") + TimeCodeFromMs(s.begVideoAtMs) + u' ';
    return input + QStringLiteral("-i ") + ShellQuote(s.source);
}

QString segmentOutput(const RenderInputs& in, const RenderSegment& s, int inputIndex) {
    const QString rate = FfmpegDialect::FrameRate(in.gstrFrameRate);
    const QSize size = FfmpegDialect::ParseFrameSize(in.gstrVideoRes);
    QString filter;
    if (s.kind == u"Video") {
        // A video shorter than its time on screen holds its last picture.
        filter = QStringLiteral("fps=") + rate + u',' + fitFilter(size) +
                 QStringLiteral(",tpad=stop=-1:stop_mode=clone");
    } else {
        // The picture is decoded and scaled once, then its one frame repeated: looping the
        // input would decode a large picture for every frame. The loop ends by itself; ffmpeg
        // 5.1 can spin for ever when several endless loops share a run.
        filter = fitFilter(size) +
                 QStringLiteral(",loop=loop=%1:size=1,setpts=N/(").arg(s.frames - 1) + rate +
                 QStringLiteral(")/TB");
    }
    return QStringLiteral("-map %1:v -vf ").arg(inputIndex) + ShellQuote(filter) +
           QStringLiteral(" -frames:v ") + QString::number(s.frames) + QStringLiteral(" -r ") +
           rate + u' ' + FfmpegDialect::PieceEncoderOptions() + QStringLiteral(" -y ") +
           ShellQuote(s.piece);
}

} // namespace

QString SegmentLine(const RenderInputs& in, const RenderSegment& segment) {
    return BatchLine(in, {segment});
}

QString BatchLine(const RenderInputs& in, const QList<RenderSegment>& segments) {
    QString line = head(in.ffmpeg);
    for (const RenderSegment& s : segments)
        line += u' ' + segmentInput(s);
    for (qsizetype i = 0; i < segments.size(); ++i)
        line += u' ' + segmentOutput(in, segments[i], int(i));
    return line;
}

QStringList JoinLines(const QStringList& pieces, const QString& workFolder,
                      const QString& joinedFile) {
    QStringList lines;
    QStringList list;
    for (qsizetype j = 1; j <= pieces.size(); ++j) {
        list << ShellQuote(pieces[j - 1]);
        if (j % 5 == 0) {
            const QString temp = workFolder + QStringLiteral("/temp%1.mpg").arg(j);
            lines << QStringLiteral("cat ") + list.join(u' ') + QStringLiteral(" > ") +
                         ShellQuote(temp);
            list = QStringList{ShellQuote(temp)};
        }
    }
    lines << QStringLiteral("cat ") + list.join(u' ') + QStringLiteral(" > ") +
                 ShellQuote(joinedFile);
    return lines;
}

RenderPlan BuildRenderPlan(const RenderInputs& in) {
    RenderPlan plan;
    plan.output = in.output;
    plan.partialOutput = PartialOutputOf(in.output);
    plan.targetMs = in.recordingMs;
    if (in.recordingMs <= 0) {
        plan.error = QStringLiteral("The recording \"%1\" has no length; there is nothing to "
                                    "render.")
                         .arg(in.voiceFile);
        return plan;
    }

    if (in.rows.isEmpty()) {
        plan.audioOnly = true;
        plan.finalLine = head(in.ffmpeg) + QStringLiteral(" -progress pipe:1 -nostats -i ") +
                         ShellQuote(in.voiceFile) + QStringLiteral(" -y ") +
                         ShellQuote(plan.partialOutput);
        return plan;
    }

    const QSize size = FfmpegDialect::ParseFrameSize(in.gstrVideoRes);
    if (!size.isValid()) {
        plan.error = QStringLiteral("\"%1\" is not a frame size; use WIDTHXHEIGHT, for example "
                                    "320X240.")
                         .arg(in.gstrVideoRes);
        return plan;
    }
    const double fps = FfmpegDialect::FramesPerSecond(in.gstrFrameRate);

    // Only rows that put something on screen start a stretch. A row that shows nothing
    // (sound, an unknown file) leaves the previous item on screen, so no later item moves.
    struct Item {
        const EventRow* row;
        qint64 ms;
    };
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

    const qint64 totalFrames = frameAt(in.recordingMs, fps);
    plan.totalFrames = totalFrames;
    auto add = [&](const QString& kind, const QString& source, qint64 startMs, qint64 endMs,
                   qint64 begMs, int count) {
        const qint64 first = frameAt(startMs, fps);
        const qint64 frames = std::min(frameAt(endMs, fps), totalFrames) - first;
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
        s.piece = in.workFolder + QStringLiteral("/%1.mpg").arg(s.number);
        s.line = SegmentLine(in, s);
        RenderSegment black = s;
        black.kind = QStringLiteral("Black");
        black.source = in.blackPicture;
        s.blackLine = SegmentLine(in, black);
        plan.segments.push_back(s);
    };

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

    QStringList pieces;
    for (const RenderSegment& s : plan.segments)
        pieces << s.piece;
    plan.joinedFile = in.workFolder + QStringLiteral("/FinalVideo.mpg");
    plan.joinLines = JoinLines(pieces, in.workFolder, plan.joinedFile);

    // One pass converts the joined pieces to the output and mixes in the voice. The video is
    // mapped from the pieces and the sound from the mix, so no stream of a video can take the
    // voice's place.
    const QString rate = FfmpegDialect::FrameRate(in.gstrFrameRate);
    QString line = head(in.ffmpeg) + QStringLiteral(" -progress pipe:1 -nostats ") +
                   FfmpegDialect::JoinedInputFormat() + QStringLiteral(" -framerate ") + rate +
                   QStringLiteral(" -i ") + ShellQuote(plan.joinedFile) + QStringLiteral(" -i ") +
                   ShellQuote(in.voiceFile);
    QStringList soundInputs;
    int inputIndex = 2;
    for (const RenderSegment& s : plan.segments) {
        if (s.kind != u"Video" || !in.videosWithSound.contains(s.source))
            continue;
        if (s.begVideoAtMs > 0)
            line += QStringLiteral(" -ss ") + TimeCodeFromMs(s.begVideoAtMs);
        line += QStringLiteral(" -t ") + seconds(s.lengthMs) + QStringLiteral(" -i ") +
                ShellQuote(s.source);
        soundInputs << QStringLiteral("[%1:a]aresample=44100,adelay=%2:all=1[s%1]")
                           .arg(inputIndex)
                           .arg(s.startMs);
        ++inputIndex;
    }
    if (soundInputs.isEmpty()) {
        line += QStringLiteral(" -map 0:v -map 1:a");
    } else {
        QString graph = soundInputs.join(u';') + QStringLiteral(";[1:a]");
        for (int k = 2; k < inputIndex; ++k)
            graph += QStringLiteral("[s%1]").arg(k);
        // duration=first: the voice sets the length; normalize=0 keeps the voice's level.
        graph +=
            QStringLiteral("amix=inputs=%1:duration=first:normalize=0[mix]").arg(inputIndex - 1);
        line += QStringLiteral(" -filter_complex ") + ShellQuote(graph) +
                QStringLiteral(" -map 0:v -map '[mix]'");
    }
    // The joined stream carries no timestamps after its first frame, and the ones ffmpeg
    // guesses skip a frame at every piece boundary: number the frames afresh.
    line += QStringLiteral(" -vf ") +
            ShellQuote(QStringLiteral("setpts=N/(") + rate + QStringLiteral(")/TB"));
    line += QStringLiteral(" -r ") + rate + QStringLiteral(" -s ") + in.gstrVideoRes + u' ' +
            FfmpegDialect::FinalEncoderOptions() + QStringLiteral(" -y ") +
            ShellQuote(plan.partialOutput);
    plan.finalLine = line;
    return plan;
}

} // namespace cq
