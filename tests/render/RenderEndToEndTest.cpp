#include "RenderFixture.h"

#include "platform/TextFiles.h"
#include "render/AviContents.h"
#include "render/RenderJob.h"
#include "studio/TimelineFile.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>

using namespace cq;
using test::ColourName;
using test::Event;
using test::RenderEndToEnd;

namespace {

// Frames stand at whole frame steps from 0: no frame is shifted in time. A still's held frames
// are empty chunks, which a decoder skips, so steps may be left out between frames.
void expectFramesOnWholeSteps(test::RenderTestMedia& media, const QString& out, double seconds) {
    const double step = 1001.0 / 30000.0;
    const QList<double> times = media.frameTimes(out);
    ASSERT_GT(times.size(), 30);
    EXPECT_NEAR(times.first(), 0, 0.002);
    EXPECT_NEAR(times.last(), seconds - step, step);
    for (qsizetype i = 0; i < times.size(); ++i) {
        ASSERT_NEAR(times[i] / step, std::round(times[i] / step), 0.05) << "frame " << i;
        if (i > 0) {
            ASSERT_GT(times[i], times[i - 1] + step / 2) << "frame " << i;
        }
    }
    EXPECT_EQ(ReadAviContents(out).videoFrames, std::llround(seconds / step));
    EXPECT_LT(times.size(), 80) << "the stills' held frames were encoded one by one";
}

// The voice runs from start to end; the video's 1 kHz tone only while the video is on screen.
void expectVoiceThroughoutAndVideoToneOnlyOnScreen(test::RenderTestMedia& media,
                                                   const QString& out) {
    for (double at : {0.1, 1.9, 3.5})
        EXPECT_GT(media.bandLevel(out, at, 0.4, 440), -35) << at;
    EXPECT_GT(media.bandLevel(out, 1.7, 0.6, 1000), -35);
    EXPECT_LT(media.bandLevel(out, 0.6, 0.6, 1000), -45);
    EXPECT_LT(media.bandLevel(out, 2.7, 0.4, 1000), -45);
}

} // namespace

TEST_F(RenderEndToEnd, EveryItemFromItsTimeWithTheVoiceAndTheVideosSound) {
    const QString voice = makeVoice(4.0);
    const QString red = makePicture("red 4x3.jpg", "red", 640, 480);
    const QString tall = makePicture("blue \"tall\".jpg", "blue", 300, 600);
    const QString clip = mediaFile("green; $(touch INJECTED).avi");
    const QString text = mediaFile(QString::fromUtf8("it's `touch INJECTED` ä.jpg"));
    ASSERT_TRUE(media.toneVideo(clip, "green", 3.0, 1000));
    ASSERT_TRUE(media.bitmapUnderName(text, "yellow"));

    const QString mute = mediaFile("mute.avi");
    ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "color=c=blue:s=160x120:d=1", "-an", mute}));

    // With video sound kept, only videos that have a sound track join the mix.
    studio.keepVideoSound = true;
    const RenderInputs in =
        inputsFor({Event(MediaKind::Pictures, 500, red), Event(MediaKind::Video, 1500, clip, 500),
                   Event(MediaKind::Text, 2500, text), Event(MediaKind::Pictures, 3200, tall),
                   Event(MediaKind::Video, 3800, mute)},
                  voice);
    // The probe for sound is the job's: the window does not wait for it.
    RenderJob job(in, pool);
    QList<RenderJob::Step> steps;
    QObject::connect(&job, &RenderJob::stepStarted, [&](RenderJob::Step s) { steps << s; });
    const RenderReport report = job.runToEnd();
    EXPECT_EQ(job.videosWithSound(), QSet<QString>({clip}));
    using Step = RenderJob::Step;
    EXPECT_EQ(steps, QList<Step>({Step::Probe, Step::Plan, Step::Pieces, Step::Mix, Step::Verify,
                                  Step::Publish}));
    ASSERT_EQ(report.outcome, RenderReport::Outcome::Done) << report.message.toStdString();
    EXPECT_TRUE(report.ok()) << report.message.toStdString();
    const QString out = paths.gstrFinalMixAVIFileSpec;
    ASSERT_EQ(report.output, out);
    EXPECT_FALSE(QFileInfo::exists(app.file("INJECTED")));
    EXPECT_FALSE(QFileInfo::exists(QDir::current().filePath("INJECTED")));

    EXPECT_NEAR(media.duration(out, "format"), 4.0, 0.2);
    EXPECT_NEAR(media.duration(out, "video"), 4.0, 0.2);
    EXPECT_NEAR(media.duration(out, "audio"), 4.0, 0.2);
    expectFramesOnWholeSteps(media, out, 4.0);

    expectSequence(out, {{0.5, "red"}, {1.5, "green"}, {2.5, "yellow"}, {3.2, "blue"}});
    // The tall picture stands between black bars.
    EXPECT_EQ(ColourName(media.colourAt(out, 3.5)), "blue");
    EXPECT_EQ(ColourName(media.colourAt(out, 3.9)), "blue");

    expectVoiceThroughoutAndVideoToneOnlyOnScreen(media, out);

    const QString log = ReadFileToString(report.logFile);
    EXPECT_TRUE(log.contains("measured: voice 4.000s")) << log.toStdString();

    // Rendered again with every piece kept, the join still starts exactly once.
    const RenderReport again = render(in);
    ASSERT_TRUE(again.ok()) << again.message.toStdString();
    EXPECT_EQ(again.reusedPieces, 6);
    EXPECT_EQ(ReadFileToString(again.logFile).count("final: "), 1);
}

TEST_F(RenderEndToEnd, UnreadableItemTurnsBlackAndChangedPicturesAreRenderedAgain) {
    const QString voice = makeVoice(3.0);
    const QString first = makePicture("first.jpg", "red");
    const QString broken = mediaFile("broken.jpg");
    const QString blue = makePicture("blue.jpg", "blue");
    test::WriteFile(broken, QByteArray("this is no picture"));
    const QString soundOnly = mediaFile("sound only.mp4");
    ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "sine=d=1", "-y", soundOnly}));
    const RenderInputs in = inputsFor(
        {Event(MediaKind::Pictures, 0, first), Event(MediaKind::Pictures, 1000, broken),
         Event(MediaKind::Pictures, 2000, blue), Event(MediaKind::Video, 2500, soundOnly)},
        voice);

    const RenderReport once = render(in);
    ASSERT_EQ(once.outcome, RenderReport::Outcome::Done) << once.message.toStdString();
    EXPECT_TRUE(once.lengthOk);
    QStringList failed = once.failedItems;
    failed.sort();
    EXPECT_EQ(failed, QStringList({broken, soundOnly}));
    // Each named with why, in words a user can act on.
    for (const QString& said : {broken + "\": it is no picture or video that ffmpeg can read",
                                soundOnly + "\": it holds no picture"})
        EXPECT_TRUE(once.message.contains(said)) << once.message.toStdString();
    EXPECT_FALSE(once.message.contains("damaged")) << once.message.toStdString();
    expectSequence(paths.gstrFinalMixAVIFileSpec,
                   {{0.0, "red"}, {1.0, "black"}, {2.0, "blue"}, {2.5, "black"}});
    // Converted at a constant rate, as for phones, the result keeps its length: ffmpeg repeats
    // a last frame by the gaps before it, so a held picture's last frames are real.
    const QString phone = app.file("phone.avi");
    ASSERT_TRUE(media.run({"-i", paths.gstrFinalMixAVIFileSpec, "-fps_mode", "cfr", "-r", "25",
                           "-c:v", "mpeg4", "-y", phone}));
    EXPECT_NEAR(media.duration(phone, "video"), 3.0, 0.1);

    // The same picture file with new content must not show the old piece.
    ASSERT_TRUE(media.solidPicture(first, "green", 320, 240));
    const RenderReport twice = render(in);
    ASSERT_EQ(twice.outcome, RenderReport::Outcome::Done);
    EXPECT_EQ(twice.reusedPieces, 1); // the blue picture
    expectSequence(paths.gstrFinalMixAVIFileSpec, {{0.0, "green"}, {1.0, "black"}, {2.0, "blue"}});
}

TEST_F(RenderEndToEnd, NoEventsGivesTheVoiceAsMp3) {
    const QString voice = makeVoice(2.5);
    const RenderReport report = render(inputsFor({}, voice));
    EXPECT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_EQ(report.output, paths.gstrFinalMixMP3FileSpec);
    EXPECT_NEAR(media.duration(paths.gstrFinalMixMP3FileSpec, "audio"), 2.5, 0.2);
    EXPECT_FALSE(QFileInfo::exists(paths.gstrFinalMixAVIFileSpec));
}

TEST_F(RenderEndToEnd, CancelStopsQuicklyAndKeepsThePreviousResult) {
    const QString voice = makeVoice(40.0);
    const QList<TimelineEvent> rows = pictureRows(
        "p", {"blue", "red", "blue", "red", "blue", "red", "blue", "red"}, 5000, {1280, 960});
    const QByteArray previous("the previous render");
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, previous);
    studio.gstrVideoRes = QStringLiteral("640X480");

    RenderJob job(inputsFor(rows, voice), pool);
    QList<RenderJob::Step> steps;
    QObject::connect(&job, &RenderJob::stepStarted, [&](RenderJob::Step s) { steps << s; });
    QElapsedTimer sinceCancel;
    QObject::connect(&job, &RenderJob::progressed, &job, [&](int percent) {
        if (percent > 0 && !sinceCancel.isValid()) {
            sinceCancel.start();
            job.cancel();
        }
    });
    const RenderReport report = job.runToEnd();
    EXPECT_EQ(report.outcome, RenderReport::Outcome::Cancelled);
    ASSERT_TRUE(sinceCancel.isValid());
    EXPECT_LT(sinceCancel.elapsed(), 1000);
    EXPECT_EQ(ReadFileToBytes(paths.gstrFinalMixAVIFileSpec), previous);
    EXPECT_FALSE(QFileInfo::exists(job.plan().partialOutput));
    EXPECT_FALSE(job.plan().partialOutput.isEmpty());
    ASSERT_FALSE(steps.isEmpty());
    EXPECT_EQ(steps.last(), RenderJob::Step::Pieces); // nothing is mixed after a cancel
    EXPECT_TRUE(ReadFileToString(report.logFile).contains("cancel"));
}

TEST_F(RenderEndToEnd, CommandLineRenderAndItsExitCodes) {
    const QString folder = redPictureProject(2.0, "1.000");
    const QString output = app.file("out/Result.avi");
    QDir().mkpath(app.file("out"));

    auto run = [&](const QStringList& extra, QByteArray* out = nullptr) {
        return runStudio(extra, out).exitCode;
    };
    QByteArray out;
    EXPECT_EQ(run({"--render", folder + "/Timeline.txt", "--output", output}, &out), 0);
    EXPECT_EQ(out.trimmed(), output.toUtf8());
    EXPECT_NEAR(media.duration(output, "format"), 2.0, 0.2);
    EXPECT_EQ(ColourName(media.colourAt(output, 1.5)), "red");

    EXPECT_EQ(run({"--render", app.file("missing/Timeline.txt")}), 2);
    EXPECT_EQ(run({"--render", folder + "/Timeline.txt", "--voice", app.file("none.wav")}), 2);
    EXPECT_EQ(run({"--render", folder + "/Timeline.txt", "--size", "huge"}), 2);
    ASSERT_TRUE(SaveBytesToFile("not a row", folder + "/Bad.txt"));
    EXPECT_EQ(run({"--render", folder + "/Bad.txt"}), 2);
}

TEST_F(RenderEndToEnd, ManyStillsOfDifferentLengthsShareRunsAndKeepTheirTimes) {
    const QString voice = makeVoice(4.0);
    const QStringList colours{"red", "blue", "yellow", "white", "green"};
    const QList<double> times{0.0, 0.9, 1.1, 1.9, 2.2, 2.4, 3.0, 3.1, 3.6};
    QList<TimelineEvent> rows;
    QList<std::pair<double, QString>> expected;
    for (int i = 0; i < times.size(); ++i) {
        const QString colour = colours[i % colours.size()];
        const QString pic =
            makePicture(QStringLiteral("still %1.jpg").arg(i), colour, 200 + 40 * i, 150 + 10 * i);
        rows << Event(MediaKind::Pictures, qRound64(times[i] * 1000), pic);
        expected.append({times[i], colour});
    }
    const RenderReport report = render(inputsFor(rows, voice));
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_TRUE(report.failedItems.isEmpty());
    // Pieces of one run end at different frames; none may hold the run up or lose its place.
    EXPECT_LT(report.elapsedMs, 30000);
    expectSequence(paths.gstrFinalMixAVIFileSpec, expected);
}

TEST_F(RenderEndToEnd, PiecesOfOneVideoAreCutFromOneDecodingEachFromItsOwnPosition) {
    const QString voice = makeVoice(4.0);
    const QString clip = mediaFile("red green blue.avi");
    const QString yellow = makePicture("yellow.jpg", "yellow");
    // One second each of red, green and blue, with no key frame after the first.
    ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "color=c=red:s=160x120:r=30:d=1", "-f", "lavfi",
                           "-i", "color=c=green:s=160x120:r=30:d=1", "-f", "lavfi", "-i",
                           "color=c=blue:s=160x120:r=30:d=1", "-filter_complex",
                           "concat=n=3:v=1:a=0", "-c:v", "mpeg4", "-g", "1000", clip}));
    const RenderInputs in = inputsFor(
        {Event(MediaKind::Video, 0, clip, 0), Event(MediaKind::Pictures, 1000, yellow),
         Event(MediaKind::Video, 2000, clip, 2000), Event(MediaKind::Video, 3000, clip, 1000)},
        voice);
    const RenderReport report = render(in);
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    expectSequence(paths.gstrFinalMixAVIFileSpec,
                   {{0.0, "red"}, {1.0, "yellow"}, {2.0, "blue"}, {3.0, "green"}});

    // The three pieces of the video came from one run with the video as its one input.
    const QStringList runs = ReadFileToString(report.logFile).split('\n').filter(" pieces ");
    const QStringList videoRuns = runs.filter("red green blue.avi");
    ASSERT_EQ(videoRuns.size(), 1) << runs.join('\n').toStdString();
    EXPECT_EQ(videoRuns.first().count("-i "), 1) << videoRuns.first().toStdString();
    EXPECT_EQ(videoRuns.first().count("-map 0:v"), 3) << videoRuns.first().toStdString();
}

// An animated picture decodes to all its frames; a still holds its first for its whole time.
TEST_F(RenderEndToEnd, AnimatedGifAndPngShowTheirFirstFrame) {
    const QString voice = makeVoice(3.0);
    const QString gif = mediaFile("moving.gif");
    const QString png = mediaFile("moving.png");
    for (const auto& [file, format] : {std::pair{gif, "gif"}, std::pair{png, "apng"}})
        ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "color=red:s=160x120:r=10:d=0.5", "-f", "lavfi",
                               "-i", "color=blue:s=160x120:r=10:d=1", "-filter_complex",
                               "[0][1]concat=n=2", "-f", format, "-y", file}));
    const RenderReport report = render(inputsFor(
        {Event(MediaKind::Pictures, 500, gif), Event(MediaKind::Pictures, 1500, png)}, voice));
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_TRUE(report.failedItems.isEmpty()) << report.message.toStdString();
    expectSequence(paths.gstrFinalMixAVIFileSpec, {{0.0, "black"}, {0.5, "red"}, {1.5, "red"}});
    EXPECT_EQ(ColourName(media.colourAt(paths.gstrFinalMixAVIFileSpec, 2.9)), "red");
}
