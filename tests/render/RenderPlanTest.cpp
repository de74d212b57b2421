#include "render/RenderPlan.h"
#include "platform/ShellQuote.h"
#include "render/FfmpegDialect.h"
#include "support/TestRows.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace cq;
using test::Row;

namespace {

RenderInputs inputs(qint64 recordingMs, QList<EventRow> rows) {
    RenderInputs in;
    in.rows = std::move(rows);
    in.recordingMs = recordingMs;
    in.voiceFile = QStringLiteral("/w/RecordedAudio.wav");
    in.workFolder = QStringLiteral("/w");
    in.blackPicture = QStringLiteral("/app/SystemMedia/Black.jpg");
    in.ffmpeg = QStringLiteral("/app/System/ffmpeg");
    in.output = QStringLiteral("/w/FinalMix.avi");
    return in;
}

qint64 frameAt(double seconds) {
    return std::llround(seconds * 30000.0 / 1001.0);
}

QList<EventRow> pictures(int n) {
    QList<EventRow> rows;
    for (int i = 0; i < n; ++i)
        rows << Row(i + 1, "Pictures", QString::number(i) + ".000",
                    QStringLiteral("/p/%1.jpg").arg(i));
    return rows;
}

} // namespace

TEST(RenderPlan, BlackLeadInPictureAndVideoEachFromTheirTime) {
    const RenderPlan plan = BuildRenderPlan(inputs(
        10000, {Row(1, "Pictures", "2.000", "/p/red.jpg"), Row(2, "Video", "6.000", "/v/a.avi")}));
    ASSERT_TRUE(plan.ok());
    ASSERT_EQ(plan.segments.size(), 3);
    EXPECT_EQ(plan.segments[0].kind, "Black");
    EXPECT_EQ(plan.segments[0].source, "/app/SystemMedia/Black.jpg");
    EXPECT_EQ(plan.segments[1].source, "/p/red.jpg");
    EXPECT_EQ(plan.segments[2].source, "/v/a.avi");
    EXPECT_EQ(plan.segments[1].lengthMs, 4000);
    EXPECT_EQ(plan.segments[2].lengthMs, 4000);
    // Frame counts add up to the voice's length, and each item starts at its own time.
    EXPECT_EQ(plan.segments[1].firstFrame, frameAt(2));
    EXPECT_EQ(plan.segments[2].firstFrame, frameAt(6));
    qint64 frames = 0;
    for (const RenderSegment& s : plan.segments)
        frames += s.frames;
    EXPECT_EQ(frames, frameAt(10));
    EXPECT_FALSE(plan.segments[2].line.contains(" -ss ")); // an empty start: from the beginning
    // Pieces are in the result's codec and size already: the join copies, only sound is encoded.
    EXPECT_TRUE(plan.segments[1].line.contains("-c:v mpeg4"));
    EXPECT_TRUE(plan.segments[1].line.endsWith(ShellQuote(plan.segments[1].partial)));
    EXPECT_EQ(plan.segments[1].partial, plan.segments[1].piece + ".part");
    EXPECT_EQ(plan.joinList, "ffconcat version 1.0\nfile '" + plan.segments[0].piece + "'\nfile '" +
                                 plan.segments[1].piece + "'\nfile '" + plan.segments[2].piece +
                                 "'\n");
    EXPECT_TRUE(plan.finalLine.contains("-f concat -safe 0 -i '/w/FinalVideo.txt'"));
    EXPECT_TRUE(plan.finalLine.contains("-map 0:v -map 1:a -c:v copy"));
    EXPECT_TRUE(plan.finalLine.endsWith("'/w/FinalMix.rendering-0.avi'"));
}

TEST(RenderPlan, ManyShortItemsNeverDriftByMoreThanHalfAFrame) {
    QList<EventRow> rows;
    for (int i = 0; i < 200; ++i)
        rows << Row(i + 1, "Pictures", QString::number(i * 0.317, 'f', 3), "/p/x.jpg");
    const RenderPlan plan = BuildRenderPlan(inputs(70000, rows));
    ASSERT_EQ(plan.segments.size(), 200);
    for (const RenderSegment& s : plan.segments) {
        const double shownAt = s.firstFrame * 1001.0 / 30000.0 * 1000.0;
        EXPECT_LE(std::abs(shownAt - double(s.startMs)), 1001.0 / 60.0 + 0.01) << s.number;
    }
    EXPECT_EQ(plan.segments.last().firstFrame + plan.segments.last().frames, frameAt(70));
}

TEST(RenderPlan, PiecesAreNamedByWhatTheyShowSoTheyAreFoundAgain) {
    // The same picture at the same length shares one piece; an inserted item moves no name.
    const RenderPlan before = BuildRenderPlan(inputs(
        6000, {Row(1, "Pictures", "0.000", "/p/a.jpg"), Row(2, "Pictures", "2.000", "/p/b.jpg"),
               Row(3, "Pictures", "4.000", "/p/a.jpg")}));
    EXPECT_EQ(before.segments[0].piece, before.segments[2].piece);
    EXPECT_EQ(before.distinctPieces().size(), 2);
    const RenderPlan after = BuildRenderPlan(inputs(
        8000, {Row(1, "Pictures", "0.000", "/p/new.jpg"), Row(2, "Pictures", "2.000", "/p/a.jpg"),
               Row(3, "Pictures", "4.000", "/p/b.jpg"), Row(4, "Pictures", "6.000", "/p/a.jpg")}));
    EXPECT_EQ(after.segments[2].piece, before.segments[1].piece);
    EXPECT_NE(after.segments[0].piece, before.segments[0].piece);
    // Another output size is another piece.
    RenderInputs big = inputs(6000, {Row(1, "Pictures", "0.000", "/p/a.jpg")});
    big.gstrVideoRes = QStringLiteral("640X480");
    EXPECT_NE(BuildRenderPlan(big).segments[0].piece, before.segments[0].piece);
}

TEST(RenderPlan, EveryItemIsFittedIntoTheOutputsOwnShape) {
    RenderInputs in = inputs(2000, {Row(1, "Pictures", "0.000", "/p/wide.jpg")});
    in.gstrVideoRes = QStringLiteral("1280X720");
    const QString line = BuildRenderPlan(in).segments[0].line;
    EXPECT_TRUE(line.contains("scale=1280:720:force_original_aspect_ratio=decrease"))
        << line.toStdString();
    EXPECT_TRUE(line.contains("pad=1280:720:(ow-iw)/2:(oh-ih)/2:black"));
}

TEST(FrameSize, OnlyDigitsXDigitsPass) {
    EXPECT_EQ(FfmpegDialect::ParseFrameSize("320X240"), QSize(320, 240));
    EXPECT_EQ(FfmpegDialect::ParseFrameSize("1280x720"), QSize(1280, 720));
    for (const char* bad : {"320x\n240", "320X240\n", " 320X240", "320X240 ", "320 X 240",
                            "320X240;ls", "321X240", "8X8", "99999X240", "X240", "320X", "big", ""})
        EXPECT_FALSE(FfmpegDialect::ParseFrameSize(QString::fromUtf8(bad)).isValid()) << bad;
    // Digits of other scripts are no digits to ffmpeg.
    EXPECT_FALSE(
        FfmpegDialect::ParseFrameSize(QString::fromUtf8("\u0663\u0662\u0660X240")).isValid());
    // A rate that is no number never reaches a script.
    EXPECT_EQ(FfmpegDialect::FrameRate("25"), "25");
    EXPECT_EQ(FfmpegDialect::FrameRate("25;reboot"), "30000/1001");
}

TEST(RenderPlan, RowsThatShowNothingLeaveThePreviousItemOnScreen) {
    const RenderPlan plan = BuildRenderPlan(inputs(
        10000,
        {Row(1, "Pictures", "1.000", "/p/a.jpg"), Row(2, "", "3.000", "/m/song.mid"),
         Row(3, "Audio", "4.000", "/m/a.mp3"), Row(4, "Pictures", "5.000", ""),
         Row(5, "Text", "6.000", "/w/Hello.jpg"), Row(6, "Pictures", "6.000", "/p/b.jpg"),
         Row(7, "Both", "8.000", "/w/Bye.jpg"), Row(8, "Pictures", "12.000", "/p/late.jpg")}));
    ASSERT_EQ(plan.segments.size(), 4);
    EXPECT_EQ(plan.segments[1].source, "/p/a.jpg");
    EXPECT_EQ(plan.segments[1].lengthMs, 5000);
    EXPECT_EQ(plan.segments[2].source, "/p/b.jpg"); // the later of two rows at 6 s
    EXPECT_EQ(plan.segments[2].firstFrame, frameAt(6));
    EXPECT_EQ(plan.segments[3].source, "/w/Bye.jpg");
    EXPECT_EQ(plan.segments[3].lengthMs, 2000); // the row beyond the recording adds nothing
}

TEST(RenderPlan, VideoStartAndKeptSoundMixedUnderTheVoice) {
    RenderInputs in = inputs(10000, {Row(1, "Video", "0.000", "/v/a.avi", "12.5"),
                                     Row(2, "Video", "4.000", "/v/b.avi", ".500"),
                                     Row(3, "Pictures", "7.000", "/p/a.jpg")});
    EXPECT_TRUE(BuildRenderPlan(in).segments[0].line.contains("-ss 00:00:12.5 -i '/v/a.avi'"));
    EXPECT_FALSE(BuildRenderPlan(in).finalLine.contains("amix"));
    in.videosWithSound = {QStringLiteral("/v/b.avi")};
    const RenderPlan plan = BuildRenderPlan(in);
    EXPECT_TRUE(plan.finalLine.contains("-ss 00:00:00.5 -t 3.000 -i '/v/b.avi'"));
    EXPECT_TRUE(plan.finalLine.contains("[2:a]aresample=44100,adelay=4000:all=1[s2]"));
    EXPECT_TRUE(plan.finalLine.contains("[1:a][s2]amix=inputs=2:duration=first"));
    EXPECT_TRUE(plan.finalLine.contains("-map 0:v -map '[mix]'"));
}

TEST(RenderPlan, NoEventsGivesTheVoiceAloneAndBadInputsAreRefused) {
    RenderInputs in = inputs(3000, {});
    in.output = QStringLiteral("/w/FinalMix.mp3");
    const RenderPlan voice = BuildRenderPlan(in);
    EXPECT_TRUE(voice.audioOnly);
    EXPECT_TRUE(voice.segments.isEmpty());
    EXPECT_TRUE(
        voice.finalLine.endsWith("-i '/w/RecordedAudio.wav' -y '/w/FinalMix.rendering-0.mp3'"));

    EXPECT_FALSE(BuildRenderPlan(inputs(0, pictures(1))).ok());
    RenderInputs badSize = inputs(3000, pictures(1));
    badSize.gstrVideoRes = QStringLiteral("big");
    EXPECT_FALSE(BuildRenderPlan(badSize).ok());
}

TEST(RenderPlan, OneRunMakesSeveralPiecesEachFromItsOwnInput) {
    const QString hostile = QStringLiteral("/p/it's $(x) `y`; \"z\".jpg");
    const RenderInputs in = inputs(6000, {Row(1, "Pictures", "0.000", hostile),
                                          Row(2, "Pictures", "2.000", "/v/a b.jpg"),
                                          Row(3, "Pictures", "4.000", "/p/c.jpg")});
    const RenderPlan plan = BuildRenderPlan(in);
    const QString line = BatchLine(in, plan.segments);
    // Inputs first, in order, each output naming its own input.
    const qsizetype first = line.indexOf("-i '/p/it'\\''s $(x) `y`; \"z\".jpg'");
    const qsizetype second = line.indexOf("-i '/v/a b.jpg'");
    const qsizetype third = line.indexOf("-i '/p/c.jpg'");
    ASSERT_GE(first, 0) << line.toStdString();
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_LT(third, line.indexOf("-map 0:v"));
    for (int i = 0; i < 3; ++i) {
        const qsizetype map = line.indexOf(QStringLiteral("-map %1:v").arg(i));
        const qsizetype piece = line.indexOf("-y " + ShellQuote(plan.segments[i].partial));
        ASSERT_GE(map, 0);
        EXPECT_LT(map, piece);
        EXPECT_TRUE(line.mid(map, piece - map)
                        .contains(QStringLiteral("-frames:v %1 ").arg(plan.segments[i].frames)));
    }
    EXPECT_EQ(SegmentLine(in, plan.segments[1]), plan.segments[1].line);
}
