#include "RenderFixture.h"

#include "platform/TextFiles.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace cq;
using test::RenderEndToEnd;

namespace {

// A render refused by where its result goes ends before any step, and reads or writes nothing.
void expectRefusedAtOnce(RenderJob& job, const QString& named) {
    QList<RenderJob::Step> steps;
    QObject::connect(&job, &RenderJob::stepStarted,
                     [&steps](RenderJob::Step step) { steps << step; });
    const RenderReport report = job.runToEnd();
    EXPECT_EQ(report.outcome, RenderReport::Outcome::Failed);
    EXPECT_TRUE(report.message.contains(named)) << report.message.toStdString();
    EXPECT_TRUE(steps.isEmpty());
    EXPECT_TRUE(report.logFile.isEmpty()) << "no work space was taken";
}

} // namespace

TEST_F(RenderEndToEnd, TheWindowsRenderRefusesToWriteOverAnItemOrIntoAnUnwritableFolder) {
    const QString voice = mediaFile("RecordedAudio.wav");
    RenderInputs in = inputsFor(redPictureTake(voice, 1.0, 0), voice);
    // The result named like the item, as a row may name the last result itself.
    const QByteArray picture = ReadFileToBytes(mediaFile("red.jpg"));
    in.rows[0].file = mediaFile("red.avi");
    ASSERT_TRUE(WriteWholeFile(picture, in.rows[0].file));
    in.output = in.rows[0].file;
    RenderJob overItem(in, pool);
    expectRefusedAtOnce(overItem, "red.avi");
    EXPECT_EQ(ReadFileToBytes(in.rows[0].file), picture);

    in.output = "/proc/clipquill-none/Result.avi";
    RenderJob unwritable(in, pool);
    expectRefusedAtOnce(unwritable, in.output);
}

TEST_F(RenderEndToEnd, SubtitlesBesideTheResultThatTheStudioDidNotWriteStay) {
    const QString voice = mediaFile("RecordedAudio.wav");
    RenderInputs in = inputsFor(redPictureTake(voice, 1.0, 0), voice);
    QDir().mkpath(app.file("out"));
    in.output = app.file("out/b.avi");
    const QByteArray srt("1\n00:00:00,000 --> 00:00:01,000\nHand made\n");
    const QByteArray vtt("WEBVTT\n\n00:00.000 --> 00:01.000\nHand made\n");
    ASSERT_TRUE(WriteWholeFile(srt, app.file("out/b.srt")));
    ASSERT_TRUE(WriteWholeFile(vtt, app.file("out/b.vtt")));

    const RenderReport without = render(in);
    ASSERT_TRUE(without.ok()) << without.message.toStdString();
    EXPECT_TRUE(without.message.contains("was not written by the studio"));
    EXPECT_EQ(ReadFileToBytes(app.file("out/b.srt")), srt);
    EXPECT_EQ(ReadFileToBytes(app.file("out/b.vtt")), vtt);

    in.writeCaptions = true;
    in.captions = {{0, 900, "Said"}};
    RenderJob with(in, pool);
    expectRefusedAtOnce(with, app.file("out/b.srt"));
    EXPECT_EQ(ReadFileToBytes(app.file("out/b.srt")), srt);
}
