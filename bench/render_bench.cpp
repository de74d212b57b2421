// Measures a render against one ffmpeg run that makes the same video with a filter graph, in
// AVI and in MP4, at two output sizes, beside the least work any render must do (the moving
// pictures and the voice encoded, nothing else), what evening out the voice adds, a render again
// after one item changed, captions burned in, and (with --long) the lengths of a 10-minute message
// of 100 items. Prints each figure against its goal, from one run.
#include "BenchFfmpeg.h"
#include "HandWritten.h"
#include "app/StudioRender.h"
#include "platform/ToolLocator.h"
#include "platform/ToolPool.h"
#include "platform/ToolRunner.h"
#include "platform/WavFormat.h"
#include "render/RenderJob.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <cmath>
#include <cstdio>
#include <sys/resource.h>

using namespace cq;

namespace {

QString g_ffmpeg;

bool ffmpeg(const QStringList& args) {
    return bench::RunFfmpeg(g_ffmpeg, args);
}

TimelineEvent row(MediaKind kind, double atSeconds, const QString& file,
                  std::optional<qint64> startMs = std::nullopt) {
    return {kind, qRound64(atSeconds * 1000), startMs, file, {}};
}

struct Inputs {
    QString voice, video, text;
    QStringList pictures;
};

Inputs makeInputs(const QString& dir) {
    Inputs in;
    in.voice = dir + "/RecordedAudio.wav";
    ffmpeg({"-f", "lavfi", "-i", "sine=f=220:d=60", "-ac", "1", "-ar", "44100", "-y", in.voice});
    const QStringList patterns{"testsrc2", "smptehdbars", "rgbtestsrc",
                               "testsrc",  "mandelbrot",  "cellauto"};
    for (int i = 0; i < 6; ++i) {
        const QString pic = dir + QStringLiteral("/picture %1.jpg").arg(i + 1);
        ffmpeg({"-f", "lavfi", "-i", patterns[i] + "=s=1920x1080", "-frames:v", "1", "-update", "1",
                "-q:v", "3", "-y", pic});
        in.pictures << pic;
    }
    in.video = dir + "/clip.mp4";
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=s=1280x720:r=30:d=10", "-f", "lavfi", "-i",
            "sine=f=500:d=10", "-ac", "2", "-c:v", "libx264", "-preset", "veryfast", "-c:a", "aac",
            "-shortest", "-y", in.video});
    in.text = dir + "/Hello there.jpg";
    ffmpeg({"-f", "lavfi", "-i", "color=white:s=640x480", "-vf",
            "drawbox=x=40:y=200:w=560:h=80:color=black:t=fill", "-frames:v", "1", "-c:v", "bmp",
            "-f", "image2", "-update", "1", "-y", in.text});
    return in;
}

// Ten events in a minute: six pictures, the video twice, the text.
QList<TimelineEvent> tenEvents(const Inputs& in) {
    using enum MediaKind;
    return {row(Pictures, 0, in.pictures[0]),  row(Pictures, 6, in.pictures[1]),
            row(Video, 12, in.video),          row(Text, 22, in.text),
            row(Pictures, 28, in.pictures[2]), row(Pictures, 34, in.pictures[3]),
            row(Pictures, 40, in.pictures[4]), row(Pictures, 46, in.pictures[5]),
            row(Video, 52, in.video, 3000),    row(Text, 56, in.text)};
}

// A 10-minute message of 100 items: pictures, the video, the text, 6 s each.
QList<TimelineEvent> hundredEvents(const Inputs& in) {
    QList<TimelineEvent> rows;
    for (int i = 0; i < 100; ++i) {
        const double at = i * 6.0;
        if (i % 10 == 5)
            rows << row(MediaKind::Video, at, in.video, (i % 4) * 1000);
        else if (i % 10 == 9)
            rows << row(MediaKind::Text, at, in.text);
        else
            rows << row(MediaKind::Pictures, at, in.pictures[i % 6]);
    }
    return rows;
}

// A format of the result, with the encoder settings of its one-pass baseline and its goals.
struct Format {
    const char* name;
    RenderFormat format;
    bench::Encoders encoders; // the baseline's, and the least work's
    QStringList muxer;
    double renderGoal;  // render / baseline
    double changedGoal; // render after one changed item / baseline
    bool realtimeGoal;  // >= 30x realtime at 320X240
};

const QList<Format>& formats() {
    static const QList<Format> all{
        {"AVI",
         RenderFormat::Avi,
         {{"-c:v", "mpeg4", "-q:v", "4"}, {"-c:a", "mp2", "-b:a", "128k"}},
         {},
         0.75,
         0.3,
         true},
        {"MP4",
         RenderFormat::Mp4,
         {{"-c:v", "libx264", "-preset", "veryfast", "-crf", "23", "-pix_fmt", "yuv420p"},
          {"-c:a", "aac", "-b:a", "128k"}},
         {"-movflags", "+faststart"},
         0.4,
         0.15,
         false}};
    return all;
}

QString suffixOf(const Format& f) {
    return f.format == RenderFormat::Mp4 ? QStringLiteral(".mp4") : QStringLiteral(".avi");
}

// Decodes the moving pictures and encodes them and the voice, and nothing else.
double timeLeastWork(const QList<TimelineEvent>& rows, const QString& voice, const QString& size,
                     const Format& format) {
    return bench::LeastWorkSeconds(g_ffmpeg, rows, voice, WavDurationMs(voice),
                                   ParseFrameSize(size), format.encoders);
}

double seconds(const QElapsedTimer& t) {
    return double(t.nsecsElapsed()) / 1e9;
}

// Processor time of the finished child processes (the tools), for a machine shared with other
// work, where wall time says little.
double childCpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_CHILDREN, &u);
    return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

RenderInputs inputsFor(const AppPaths& paths, const QList<TimelineEvent>& rows,
                       const QString& voice, const QString& size,
                       RenderFormat format = RenderFormat::Avi, bool evenVoice = true) {
    StudioSettings studio;
    studio.gstrVideoRes = size;
    studio.renderFormat = format;
    studio.evenVoice = evenVoice;
    return StudioRenderRequest(paths, studio, rows, voice, WavDurationMs(voice), {}).inputs;
}

double timeRender(const AppPaths& paths, const QList<TimelineEvent>& rows, const QString& voice,
                  const QString& size, RenderReport* report,
                  RenderFormat format = RenderFormat::Avi, bool evenVoice = true) {
    QDir(paths.gstrTempFilesDirectory).removeRecursively();
    ToolPool pool;
    RenderJob job(inputsFor(paths, rows, voice, size, format, evenVoice), pool);
    QElapsedTimer t;
    t.start();
    *report = job.runToEnd();
    const double elapsed = seconds(t);
    if (qEnvironmentVariableIsSet("CLIPQUILL_BENCH_KEEP"))
        QFile::copy(report->logFile, paths.appFolder + "/RenderLog-" + size + ".txt");
    return elapsed;
}

double timeBaseline(const QList<TimelineEvent>& rows, const QString& voice, const QString& size,
                    const QString& black, const Format& format, const QString& out) {
    QElapsedTimer t;
    t.start();
    ToolRunner runner;
    const RunResult r = runner.runProgram(
        g_ffmpeg, bench::OnePassArguments(rows, voice, WavDurationMs(voice), ParseFrameSize(size),
                                          black, format.encoders, format.muxer, out));
    if (!r.ok())
        std::fprintf(stderr, "baseline failed: %s\n", qPrintable(r.errorText));
    return seconds(t);
}

const char* verdict(bool met) {
    return met ? "met" : "MISSED";
}

void longMessageDrift(const AppPaths& paths, const Inputs& in, const QString& dir) {
    const QString voice = dir + "/Long.wav";
    ffmpeg({"-f", "lavfi", "-i", "sine=f=220:d=600", "-ac", "1", "-ar", "44100", "-y", voice});
    RenderReport r;
    const double t = timeRender(paths, hundredEvents(in), voice, "320X240", &r);
    const qint64 spread =
        std::max({r.videoMs, r.audioMs, r.voiceMs}) - std::min({r.videoMs, r.audioMs, r.voiceMs});
    std::printf("10-minute message, 100 items, 320X240: %.2f s (%s)\n", t,
                r.ok() ? "rendered" : qPrintable(r.message));
    std::printf("  video %.3f s, sound %.3f s, voice %.3f s: spread %lld ms  (goal <= 40 ms: "
                "%s)\n\n",
                r.videoMs / 1000.0, r.audioMs / 1000.0, r.voiceMs / 1000.0, (long long)spread,
                verdict(r.ok() && spread <= 40));
}

// What evening out the voice costs: renders with it and with the voice as recorded
// (--raw-voice), taken in turns, the best of three of each, so that a moment of other work on
// the machine does not pass for the voice's cost. The even voice comes last: the render after
// one changed item then starts from a render with the same settings, as a user's would.
struct VoiceCost {
    double even = 1e9, raw = 1e9, evenCpu = 1e9, rawCpu = 1e9;
    bool ok = true;
};

VoiceCost measureVoiceCost(const AppPaths& paths, const QList<TimelineEvent>& rows,
                           const QString& voice, const QString& size, RenderFormat format) {
    VoiceCost c;
    for (int i = 0; i < 3; ++i) {
        for (const bool even : {false, true}) {
            RenderReport report;
            const double cpu = childCpuSeconds();
            const double wall = timeRender(paths, rows, voice, size, &report, format, even);
            (even ? c.even : c.raw) = std::min(even ? c.even : c.raw, wall);
            double& cpuBest = even ? c.evenCpu : c.rawCpu;
            cpuBest = std::min(cpuBest, childCpuSeconds() - cpu);
            c.ok = c.ok && report.ok();
        }
    }
    return c;
}

struct SizeResult {
    double base = 0, render = 0, changed = 0, cpuRender = 0, cpuBase = 0, least = 0;
    RenderReport report, again;
    VoiceCost voice;
};

SizeResult measureSize(const AppPaths& paths, const Inputs& in, const QList<TimelineEvent>& rows,
                       const QString& size, const Format& format, const QString& dir) {
    SizeResult r;
    // Warm the page cache and ffmpeg's libraries first.
    const QString black = paths.blackPictureFileSpec;
    timeBaseline(rows, in.voice, size, black, format, dir + "/warm" + suffixOf(format));
    const double cpu0 = childCpuSeconds();
    r.base = timeBaseline(rows, in.voice, size, black, format, dir + "/base" + suffixOf(format));
    const double cpu1 = childCpuSeconds();
    r.render = timeRender(paths, rows, in.voice, size, &r.report, format.format);
    r.cpuRender = childCpuSeconds() - cpu1;
    r.cpuBase = cpu1 - cpu0;
    r.least = timeLeastWork(rows, in.voice, size, format);
    r.voice = measureVoiceCost(paths, rows, in.voice, size, format.format);
    // One picture changes; the other nine pieces are kept.
    ffmpeg({"-f", "lavfi", "-i", QStringLiteral("testsrc=s=1920x1080:n=%1").arg(size.size()),
            "-frames:v", "1", "-update", "1", "-q:v", "3", "-y", in.pictures[3]});
    ToolPool pool;
    RenderJob job(inputsFor(paths, rows, in.voice, size, format.format), pool);
    QElapsedTimer t;
    t.start();
    r.again = job.runToEnd();
    r.changed = seconds(t);
    return r;
}

// Prints one size's lines against its goals; true when every goal is met.
bool printSize(const QString& size, const Format& f, const SizeResult& r, double message) {
    const bool realtimeGoal = f.realtimeGoal && size == u"320X240";
    const bool fast = r.render / r.base <= f.renderGoal;
    const bool realtime = !realtimeGoal || message / r.render >= 30;
    const bool quickAgain = r.changed / r.base <= f.changedGoal;
    const double evenVoice = (r.voice.even - r.voice.raw) / r.base;
    std::printf("%s %s, 10 events, 60 s message\n", f.name, qPrintable(size));
    std::printf("  one-pass baseline     %6.2f s\n", r.base);
    std::printf("  render                %6.2f s  (%s, length %s)\n", r.render,
                r.report.isDone() ? "rendered" : "FAILED", r.report.lengthOk ? "ok" : "OFF");
    std::printf("  render / baseline     %6.2f    (goal <= %.2f: %s)\n", r.render / r.base,
                f.renderGoal, verdict(fast));
    std::printf("  least work            %6.2f s  (%.2f x baseline: the video items' frames and "
                "the voice encoded, side by side)\n",
                r.least, r.least / r.base);
    std::printf("  processor time        %6.2f s render, %.2f s baseline, ratio %.2f\n",
                r.cpuRender, r.cpuBase, r.cpuRender / r.cpuBase);
    std::printf("  even voice adds       %6.2f s, %.2f x baseline (goal <= 0.1: %s); best of 3: "
                "%.2f s, --raw-voice %.2f s; processor time %+.2f s\n",
                r.voice.even - r.voice.raw, evenVoice, verdict(evenVoice <= 0.1), r.voice.even,
                r.voice.raw, r.voice.evenCpu - r.voice.rawCpu);
    if (realtimeGoal)
        std::printf("  realtime factor       %6.1f x  (goal >= 30: %s)\n", message / r.render,
                    verdict(realtime));
    std::printf("  measured: video %.3f s, sound %.3f s, voice %.3f s\n", r.report.videoMs / 1000.0,
                r.report.audioMs / 1000.0, r.report.voiceMs / 1000.0);
    std::printf("  one item changed      %6.2f s, %.2f x baseline (goal <= %.2f: %s), %d "
                "pieces reused\n\n",
                r.changed, r.changed / r.base, f.changedGoal, verdict(quickAgain),
                r.again.reusedPieces);
    return fast && realtime && quickAgain && evenVoice <= 0.1 && r.report.ok() && r.again.ok() &&
           r.voice.ok;
}

// The application folder the renders work in, with the black picture of the lead-in.
AppPaths makeAppFolder(const QString& dir) {
    const AppPaths paths = AppPaths::forFolder(dir + "/app");
    QDir().mkpath(paths.appFolder + "/SystemMedia");
    QDir().mkpath(paths.appFolder + "/SystemMediaGen");
    ffmpeg({"-f", "lavfi", "-i", "color=black:s=640x480", "-frames:v", "1", "-update", "1", "-y",
            paths.blackPictureFileSpec});
    return paths;
}

// Captions burned in at 320X240 (a cue of 2.5 s every 5 s) against the same render without
// them, both from an empty work folder, and again after one cue's text changed.
void burnedCaptionsFigure(const AppPaths& paths, const QList<TimelineEvent>& rows,
                          const QString& voice) {
    RenderInputs in = inputsFor(paths, rows, voice, "320X240");
    for (int i = 0; i < 12; ++i)
        in.captions.append({i * 5000 + 1000, i * 5000 + 3500,
                            QStringLiteral("Caption number %1,\nand its second line").arg(i + 1)});
    auto run = [&](bool burn, bool fresh, RenderReport* report) {
        if (fresh)
            QDir(paths.gstrTempFilesDirectory).removeRecursively();
        in.burnCaptions = burn;
        ToolPool pool;
        RenderJob job(in, pool);
        const double cpu = childCpuSeconds();
        *report = job.runToEnd();
        return childCpuSeconds() - cpu;
    };
    RenderReport plain, burned, again;
    const double plainCpu = run(false, true, &plain);
    const double burnedCpu = run(true, true, &burned);
    in.captions[6].text = QStringLiteral("A changed caption");
    const double againCpu = run(true, false, &again);
    std::printf("320X240, 10 events, 12 captions burned in\n");
    std::printf("  plain render          %6.2f s, %.2f s processor time\n",
                plain.elapsedMs / 1000.0, plainCpu);
    std::printf("  burned in             %6.2f s, %.2f s processor time, %.2f x plain (%s)\n",
                burned.elapsedMs / 1000.0, burnedCpu, burnedCpu / plainCpu,
                burned.ok() ? "rendered" : qPrintable(burned.message));
    std::printf("  one caption changed   %6.2f s, %.2f s processor time, %d pieces reused\n\n",
                again.elapsedMs / 1000.0, againCpu, again.reusedPieces);
}

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    QCoreApplication app(argc, argv);
    g_ffmpeg = bench::LocateBenchFfmpeg();
    if (g_ffmpeg.isEmpty())
        return 1;
    QTemporaryDir dir;
    // CLIPQUILL_BENCH_KEEP=1 keeps the inputs, pieces and render logs for a closer look.
    if (qEnvironmentVariableIsSet("CLIPQUILL_BENCH_KEEP")) {
        dir.setAutoRemove(false);
        std::printf("keeping %s\n", qPrintable(dir.path()));
    }
    const AppPaths paths = makeAppFolder(dir.path());
    std::printf("Making the inputs (60 s voice, 6 pictures 1920x1080, 10 s 1280x720 video)...\n");
    const Inputs in = makeInputs(dir.path());
    const QList<TimelineEvent> ten = tenEvents(in);
    double load[1] = {0};
    getloadavg(load, 1);
    std::printf("cores: %d, load average at start %.1f (wall times grow with other work)\n\n",
                QThread::idealThreadCount(), load[0]);
    bool allMet = true;
    // CLIPQUILL_BENCH_FORMAT=MP4 (or AVI) measures one format only.
    const QString only = qEnvironmentVariable("CLIPQUILL_BENCH_FORMAT");
    for (const Format& f : formats()) {
        if (!only.isEmpty() && only.compare(QLatin1String(f.name), Qt::CaseInsensitive) != 0)
            continue;
        for (const QString size : {"320X240", "1280X720"})
            allMet = printSize(size, f, measureSize(paths, in, ten, size, f, dir.path()),
                               WavDurationMs(in.voice) / 1000.0) &&
                     allMet;
    }
    burnedCaptionsFigure(paths, ten, in.voice);
    if (QCoreApplication::arguments().contains(QStringLiteral("--long")))
        longMessageDrift(paths, in, dir.path());
    else
        std::printf("(run with --long for the 10-minute, 100-item length check)\n");
    return allMet ? 0 : 1;
}
