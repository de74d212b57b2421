// Measures captions made from a 1-minute voice: sentences read by ffmpeg's synthetic voice with
// pauses between them, recognised through the studio's job. Prints the time against its goal,
// the processor time, and how many of the words came out right, from one run.
#include "BenchFfmpeg.h"
#include "captions/CaptionRecognitionJob.h"
#include "platform/WavFormat.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <sys/resource.h>

using namespace cq;

namespace {

const QStringList kSentences{"Welcome to our new video about the summer garden.",
                             "Today we will plant tomatoes and water the flowers.",
                             "The weather has been warm and the roses are in bloom.",
                             "Next week we will show you how to build a small pond.",
                             "Thank you for watching and see you next time."};

QString g_ffmpeg;

bool ffmpeg(const QStringList& args) {
    return bench::RunFfmpeg(g_ffmpeg, args);
}

// The sentences over and over, 1.2 s apart, cut at 60 s, as the studio records (44.1 kHz mono).
bool makeVoice(const QString& wav) {
    QStringList args;
    QString filter;
    for (int i = 0; i < kSentences.size(); ++i) {
        args << "-f"
             << "lavfi"
             << "-i" << QStringLiteral("flite=text='%1':voice=slt").arg(kSentences[i]);
        filter += QStringLiteral("[%1]aresample=44100,apad=pad_dur=1.2[p%1];").arg(i);
    }
    for (int i = 0; i < kSentences.size(); ++i)
        filter += QStringLiteral("[p%1]").arg(i);
    filter += QStringLiteral("concat=n=%1:v=0:a=1,aloop=loop=-1:size=2e9,atrim=0:60")
                  .arg(kSentences.size());
    return ffmpeg(
        args + QStringList{"-filter_complex", filter, "-ac", "1", "-c:a", "pcm_s16le", "-y", wav});
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

struct Measured {
    double seconds = 0;
    double processor = 0;
    QString text;
    QString problem;
};

Measured recognise(const QString& wav, const QString& work, int threads) {
    Measured m;
    CaptionRecognitionJob job(wav, g_ffmpeg, work);
    job.setThreadCount(threads);
    const double processorBefore = processorSeconds();
    QElapsedTimer clock;
    clock.start();
    const JobEnd end = RunToEnd(job, [&] { job.start(); });
    m.seconds = clock.elapsed() / 1000.0;
    m.processor = processorSeconds() - processorBefore;
    if (!end.isDone())
        m.problem = end.message;
    for (const CaptionCue& cue : job.cues())
        m.text += cue.text + u' ';
    return m;
}

// The voice to recognise, made in the folder; empty when ffmpeg is missing or fails.
QString prepareVoice(const QTemporaryDir& dir) {
    g_ffmpeg = bench::LocateBenchFfmpeg();
    if (g_ffmpeg.isEmpty())
        return {};
    const QString wav = dir.filePath("RecordedAudio.wav");
    std::printf("Making a 60 s voice from %lld sentences...\n", qlonglong(kSentences.size()));
    return makeVoice(wav) ? wav : QString();
}

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString wav = prepareVoice(dir);
    if (wav.isEmpty())
        return 1;
    double load[1] = {0};
    getloadavg(load, 1);
    std::printf("voice %.1f s; cores: %d, load average at start %.1f (wall times grow with other "
                "work)\n\n",
                WavDurationMs(wav) / 1000.0, QThread::idealThreadCount(), load[0]);
    const bool single = QCoreApplication::arguments().contains(QStringLiteral("--single"));
    const Measured m = recognise(wav, dir.filePath("work"), single ? 1 : 0);
    if (!m.problem.isEmpty()) {
        std::fprintf(stderr, "recognition failed: %s\n", qPrintable(m.problem));
        return 1;
    }
    const bool met = m.seconds <= 15.0;
    std::printf("recognition of 1 minute  %6.2f s  (goal <= 15 s on two cores: %s)\n", m.seconds,
                met ? "met" : "NOT met");
    std::printf("processor time           %6.2f s  (%s)\n", m.processor,
                single ? "one decoder" : "decoders side by side where two cores are free");
    std::printf("heard: %s\n", qPrintable(m.text.left(300)));
    if (!single)
        std::printf("(run with --single for one decoder)\n");
    return met ? 0 : 1;
}
