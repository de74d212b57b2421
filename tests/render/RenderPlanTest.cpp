#include "render/RenderPlan.h"
#include "TestRows.h"

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
    EXPECT_EQ(plan.segments[2].piece, "/w/3.mpg");
    EXPECT_FALSE(plan.segments[2].line.contains(" -ss ")); // an empty start: from the beginning
    ASSERT_EQ(plan.joinLines.size(), 1);
    EXPECT_EQ(plan.joinLines[0], "cat '/w/1.mpg' '/w/2.mpg' '/w/3.mpg' > '/w/FinalVideo.mpg'");
    EXPECT_TRUE(plan.finalLine.contains("-map 0:v -map 1:a"));
    EXPECT_TRUE(plan.finalLine.contains("-s 320X240"));
    EXPECT_TRUE(plan.finalLine.endsWith("'/w/FinalMix.rendering.avi'"));
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

TEST(RenderPlan, JoinsInGroupsOfFive) {
    const RenderPlan twelve = BuildRenderPlan(inputs(12000, pictures(12)));
    ASSERT_EQ(twelve.joinLines.size(), 3);
    EXPECT_EQ(twelve.joinLines[0],
              "cat '/w/1.mpg' '/w/2.mpg' '/w/3.mpg' '/w/4.mpg' '/w/5.mpg' > '/w/temp5.mpg'");
    EXPECT_EQ(twelve.joinLines[1], "cat '/w/temp5.mpg' '/w/6.mpg' '/w/7.mpg' '/w/8.mpg' "
                                   "'/w/9.mpg' '/w/10.mpg' > '/w/temp10.mpg'");
    EXPECT_EQ(twelve.joinLines[2],
              "cat '/w/temp10.mpg' '/w/11.mpg' '/w/12.mpg' > '/w/FinalVideo.mpg'");

    const RenderPlan five = BuildRenderPlan(inputs(5000, pictures(5)));
    ASSERT_EQ(five.joinLines.size(), 2);
    EXPECT_EQ(five.joinLines[1], "cat '/w/temp5.mpg' > '/w/FinalVideo.mpg'");
    EXPECT_EQ(five.segments.first().kind, "Pictures"); // first event at 0: no lead-in
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
        voice.finalLine.endsWith("-i '/w/RecordedAudio.wav' -y '/w/FinalMix.rendering.mp3'"));

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
        const qsizetype piece = line.indexOf(QStringLiteral("-y '/w/%1.mpg'").arg(i + 1));
        ASSERT_GE(map, 0);
        EXPECT_LT(map, piece);
        EXPECT_TRUE(line.mid(map, piece - map)
                        .contains(QStringLiteral("-frames:v %1 ").arg(plan.segments[i].frames)));
    }
    EXPECT_EQ(SegmentLine(in, plan.segments[1]), plan.segments[1].line);
}
