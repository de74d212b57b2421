#include "HandWritten.h"

#include "platform/ToolRunner.h"

#include <QElapsedTimer>
#include <QMap>

#include <cmath>
#include <cstdio>

namespace cq::bench {

namespace {

struct BaselineItem {
    bool video = false; // a still otherwise
    QString file;
    qint64 startMs = 0;
    qint64 begMs = -1;
};

QList<BaselineItem> baselineItems(const QList<TimelineEvent>& rows, const QString& black) {
    QList<BaselineItem> items;
    if (rows.first().atMs > 0)
        items.append({false, black, 0, -1});
    for (const TimelineEvent& r : rows)
        items.append({r.kind == MediaKind::Video, r.file, r.atMs, r.startMs.value_or(-1)});
    return items;
}

QString fitFilter(const QSize& s) {
    return QStringLiteral("scale=%1:%2:force_original_aspect_ratio=decrease:force_divisible_by=2,"
                          "pad=%1:%2:(ow-iw)/2:(oh-ih)/2,setsar=1,format=yuv420p")
        .arg(s.width())
        .arg(s.height());
}

// The frames item i fills at 30000/1001, up to the next item or the voice's end.
qint64 framesOf(const QList<BaselineItem>& items, int i, qint64 voiceMs) {
    auto frameAt = [](qint64 ms) {
        return std::llround(ms * 30000.0 / 1001.0 / 1000.0);
    };
    const qint64 end = i + 1 < items.size() ? items[i + 1].startMs : voiceMs;
    return frameAt(end) - frameAt(items[i].startMs);
}

// Adds every item as an input and its filter chain to the graph: decoded once, fitted, held
// for its frames.
QString baselineGraph(const QList<BaselineItem>& items, qint64 voiceMs, const QSize& s,
                      QStringList& args) {
    const QString fit = fitFilter(s);
    QString graph;
    for (int i = 0; i < items.size(); ++i) {
        const BaselineItem& item = items[i];
        const qint64 frames = framesOf(items, i, voiceMs);
        if (item.video && item.begMs > 0)
            args << "-ss" << QString::number(item.begMs / 1000.0);
        args << "-i" << item.file;
        graph += item.video
                     ? QStringLiteral("[%1:v]fps=30000/1001,%2,tpad=stop=-1:stop_mode=clone,"
                                      "trim=end_frame=%3,setpts=PTS-STARTPTS[v%1];")
                           .arg(i + 1)
                           .arg(fit)
                           .arg(frames)
                     : QStringLiteral("[%1:v]%2,loop=loop=%3:size=1,setpts=N/(30000/1001)/TB[v%1];")
                           .arg(i + 1)
                           .arg(fit)
                           .arg(frames - 1);
    }
    for (int i = 1; i <= items.size(); ++i)
        graph += QStringLiteral("[v%1]").arg(i);
    return graph + QStringLiteral("concat=n=%1:v=1:a=0[v]").arg(items.size());
}

// A video item as the result shows it: the frames it fills, from where in its file.
struct MovingItem {
    QString file;
    qint64 begMs = 0;
    qint64 frames = 0;
};

QList<MovingItem> movingItems(const QList<TimelineEvent>& rows, qint64 voiceMs) {
    const QList<BaselineItem> items = baselineItems(rows, {});
    QList<MovingItem> moving;
    for (int i = 0; i < items.size(); ++i)
        if (items[i].video)
            moving.append(
                {items[i].file, std::max<qint64>(items[i].begMs, 0), framesOf(items, i, voiceMs)});
    return moving;
}

// One input per file; each item's frames split off its file's one decoding.
QStringList movingArguments(const QList<MovingItem>& items, const QString& fit,
                            const QStringList& encoder) {
    QMap<QString, QList<int>> byFile;
    for (int i = 0; i < items.size(); ++i)
        byFile[items[i].file].append(i);
    QStringList args{"-nostdin", "-v", "error"};
    QString graph;
    int input = 0;
    for (auto it = byFile.cbegin(); it != byFile.cend(); ++it, ++input) {
        args << "-i" << it.key();
        graph += QStringLiteral("[%1:v]split=%2").arg(input).arg(it.value().size());
        for (const int i : it.value())
            graph += QStringLiteral("[s%1]").arg(i);
        graph += ';';
        for (const int i : it.value())
            graph += QStringLiteral("[s%1]trim=start=%2,setpts=PTS-STARTPTS,fps=30000/1001,%3,"
                                    "tpad=stop=-1:stop_mode=clone,trim=end_frame=%4[v%1];")
                         .arg(i)
                         .arg(items[i].begMs / 1000.0)
                         .arg(fit)
                         .arg(items[i].frames);
    }
    graph.chop(1);
    args << "-filter_complex" << graph;
    for (int i = 0; i < items.size(); ++i)
        args += QStringList{"-map", QStringLiteral("[v%1]").arg(i)} + encoder +
                QStringList{"-f", "null", "-"};
    return args;
}

} // namespace

QStringList OnePassArguments(const QList<TimelineEvent>& rows, const QString& voice, qint64 voiceMs,
                             const QSize& size, const QString& black, const Encoders& encoders,
                             const QStringList& muxer, const QString& out) {
    QStringList args{"-nostdin", "-v", "error", "-i", voice};
    const QString graph = baselineGraph(baselineItems(rows, black), voiceMs, size, args);
    args += QStringList{"-filter_complex", graph, "-map", "[v]", "-map", "0:a", "-r", "30000/1001"};
    return args + encoders.video + encoders.sound + muxer + QStringList{"-y", out};
}

double LeastWorkSeconds(const QString& ffmpeg, const QList<TimelineEvent>& rows,
                        const QString& voice, qint64 voiceMs, const QSize& size,
                        const Encoders& encoders) {
    const QList<MovingItem> items = movingItems(rows, voiceMs);
    ToolRunner moving;
    ToolRunner sound;
    QElapsedTimer t;
    t.start();
    const QStringList soundArgs = QStringList{"-nostdin", "-v", "error", "-i", voice, "-vn"} +
                                  encoders.sound + QStringList{"-f", "null", "-"};
    if (!moving.startProgram(ffmpeg, movingArguments(items, fitFilter(size), encoders.video)) ||
        !sound.startProgram(ffmpeg, soundArgs))
        return -1;
    bool ok = true;
    for (ToolRunner* runner : {&moving, &sound}) {
        const RunResult r = runner->waitForFinished();
        if (!r.ok())
            std::fprintf(stderr, "least work failed: %s\n", qPrintable(r.errorText));
        ok = ok && r.ok();
    }
    return ok ? double(t.nsecsElapsed()) / 1e9 : -1;
}

} // namespace cq::bench
