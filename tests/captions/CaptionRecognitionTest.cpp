#include "captions/CaptionRecognitionJob.h"
#include "captions/RecognizeCaptions.h"
#include "platform/WavFormat.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

const QStringList kSentences{QStringLiteral("Welcome to our new video about the summer garden."),
                             QStringLiteral("Today we will plant tomatoes and water the flowers."),
                             QStringLiteral("Thank you for watching and see you next time.")};
constexpr qint64 kLeadMs = 1000;
constexpr qint64 kGapMs = 1500;

QString Ffmpeg() {
    return QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
}

QStringList Words(const QString& text) {
    static const QRegularExpression notWord(QStringLiteral("[^a-z' ]"));
    return text.toLower().replace(u'\n', u' ').remove(notWord).split(u' ', Qt::SkipEmptyParts);
}

// Word error rate: the word-level edit distance over the reference's length.
double WordErrorRate(const QStringList& reference, const QStringList& heard) {
    QList<int> row(heard.size() + 1);
    for (qsizetype j = 0; j <= heard.size(); ++j)
        row[j] = int(j);
    for (qsizetype i = 1; i <= reference.size(); ++i) {
        int diagonal = row[0];
        row[0] = int(i);
        for (qsizetype j = 1; j <= heard.size(); ++j) {
            const int substitute = diagonal + (reference[i - 1] == heard[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = qMin(substitute, qMin(row[j], row[j - 1]) + 1);
        }
    }
    return double(row[heard.size()]) / double(reference.size());
}

// The sentences read by the synthetic voice, one after another with silence between them, as
// the studio records (44.1 kHz mono); returns when each sentence begins.
QList<qint64> MakeVoice(const QString& dir, const QString& wav, int repeats = 1) {
    QList<qint64> onsets;
    QStringList inputs;
    QString filter;
    qint64 at = kLeadMs;
    int n = 0;
    for (int r = 0; r < repeats; ++r) {
        for (const QString& sentence : kSentences) {
            const QString part = QDir(dir).filePath(QStringLiteral("s%1.wav").arg(n));
            if (r == 0 &&
                !test::MakeMedia({"-f", "lavfi", "-i",
                                  QStringLiteral("flite=text='%1':voice=slt").arg(sentence), "-ar",
                                  "44100", "-ac", "1", part}))
                return {};
            const QString source = QDir(dir).filePath(QStringLiteral("s%1.wav").arg(n % 3));
            inputs << "-i" << source;
            onsets << at;
            at += WavDurationMs(source) + kGapMs;
            filter += QStringLiteral("[%1]apad=pad_dur=%2[p%1];").arg(n).arg(kGapMs / 1000.0);
            ++n;
        }
    }
    for (int i = 0; i < n; ++i)
        filter += QStringLiteral("[p%1]").arg(i);
    filter += QStringLiteral("concat=n=%1:v=0:a=1,adelay=%2").arg(n).arg(kLeadMs);
    if (!test::MakeMedia(inputs + QStringList{"-filter_complex", filter, "-ar", "44100", "-ac", "1",
                                              "-c:a", "pcm_s16le", wav}))
        return {};
    return onsets;
}

int Threads() {
    return int(
        QDir(QStringLiteral("/proc/self/task"), {}, QDir::NoSort, QDir::Dirs | QDir::NoDotAndDotDot)
            .count());
}

} // namespace

// One voice, recognised by one decoder and by two that take a half each: the second half's
// words must keep their times.
TEST(CaptionRecognition, SpokenSentencesBecomeTimedCaptionsWithFewErrors) {
    QTemporaryDir dir;
    const QString wav = dir.filePath("RecordedAudio.wav");
    const QList<qint64> onsets = MakeVoice(dir.path(), wav);
    ASSERT_EQ(onsets.size(), kSentences.size());

    for (const int threads : {1, 2}) {
        SCOPED_TRACE(threads);
        CaptionRecognitionJob job(wav, Ffmpeg(), dir.filePath("work"));
        job.setThreadCount(threads);
        QSignalSpy progressed(&job, &CaptionRecognitionJob::progressed);
        job.start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !job.isRunning(); }, 90000));
        ASSERT_TRUE(job.lastEnd().isDone()) << job.lastEnd().message.toStdString();
        const CaptionCues cues = job.cues();
        EXPECT_EQ(progressed.last()[0].toInt(), 100);

        QString heard;
        for (const CaptionCue& cue : cues)
            heard += cue.text + u' ';
        EXPECT_LE(WordErrorRate(Words(kSentences.join(u' ')), Words(heard)), 0.35)
            << heard.toStdString();

        for (qsizetype i = 0; i < onsets.size(); ++i) {
            // The first cue still showing when the sentence begins, or the first after it.
            const auto first = std::find_if(cues.begin(), cues.end(), [&](const CaptionCue& cue) {
                return cue.endMs > onsets[i] - 600;
            });
            ASSERT_NE(first, cues.end()) << "sentence " << i;
            EXPECT_NEAR(double(first->startMs), double(onsets[i]), 600.0)
                << "sentence " << i << ": " << first->text.toStdString();
        }
        EXPECT_FALSE(QFileInfo::exists(dir.filePath("work/CaptionVoice16k.raw")));
    }
}

TEST(CaptionRecognition, CancelEndsPromptlyWithNothingLeftRunning) {
    QTemporaryDir dir;
    const QString wav = dir.filePath("RecordedAudio.wav");
    ASSERT_FALSE(MakeVoice(dir.path(), wav, 4).isEmpty());
    const int threadsBefore = Threads();

    CaptionRecognitionJob job(wav, Ffmpeg(), dir.filePath("work"));
    QSignalSpy progressed(&job, &CaptionRecognitionJob::progressed);
    QSignalSpy ended(&job, &CaptionRecognitionJob::ended);
    job.start();
    // Cancel once the recogniser is at work.
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return !progressed.isEmpty() && progressed.last()[0].toInt() >= 2; }, 90000));
    job.cancel();
    // Within a chunk for a decoder at work; one still loading its model (a second or two on a
    // busy machine) ends when the model is in.
    ASSERT_TRUE(ended.wait(10000));
    EXPECT_TRUE(job.lastEnd().isCancelled());
    EXPECT_EQ(ended.size(), 1);
    EXPECT_FALSE(job.isRunning());
    // The system lets a finished thread's last instant pass before it drops it from the list.
    EXPECT_TRUE(QTest::qWaitFor([&] { return Threads() == threadsBefore; }, 5000))
        << Threads() << " threads, " << threadsBefore << " before";
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("work/CaptionVoice16k.raw")));
}

TEST(CaptionRecognition, UnreadableVoiceOrMissingFfmpegIsReported) {
    QTemporaryDir dir;
    test::WriteFile(dir.filePath("RecordedAudio.wav"), "not a wave file");
    RecognizedCaptions result = RecognizeCaptions(
        dir.filePath("RecordedAudio.wav"),
        ToolLocation{Ffmpeg(), QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg")},
        dir.filePath("work"));
    EXPECT_FALSE(result.ok());
    EXPECT_TRUE(result.problem.contains(QStringLiteral("ffmpeg"))) << result.problem.toStdString();

    result = RecognizeCaptions(dir.filePath("RecordedAudio.wav"),
                               ToolLocation{{}, QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg")},
                               dir.filePath("work"));
    EXPECT_TRUE(result.problem.contains(QStringLiteral("Install"))) << result.problem.toStdString();
}
