#include "render/RenderPlan.h"
#include "support/TestRows.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace cq;
using test::Event;

namespace {

RenderInputs inputs(qint64 recordingMs, QList<TimelineEvent> rows) {
    RenderInputs in;
    in.rows = std::move(rows);
    in.recordingMs = recordingMs;
    in.voiceFile = QStringLiteral("/w/RecordedAudio.wav");
    in.workFolder = QStringLiteral("/w");
    in.blackPicture = QStringLiteral("/app/SystemMedia/Black.jpg");
    in.ffmpeg.path = QStringLiteral("/app/System/ffmpeg");
    in.output = QStringLiteral("/w/FinalMix.avi");
    return in;
}

RenderPlan plan(const RenderInputs& in, const QSet<QString>& withSound = {}) {
    return BuildRenderPlan(in, {QStringLiteral("/w/Render1"), QStringLiteral("/w/part.avi")},
                           withSound);
}

void setModified(const QString& file, const QDateTime& time) {
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadWrite));
    ASSERT_TRUE(f.setFileTime(time, QFileDevice::FileModificationTime));
}

qint64 frameAt(double seconds) {
    return std::llround(seconds * 30000.0 / 1001.0);
}

} // namespace

TEST(RenderPlan, BlackLeadInPictureAndVideoEachFromTheirTime) {
    const RenderPlan p = plan(inputs(10000, {Event(MediaKind::Pictures, 2000, "/p/red.jpg"),
                                             Event(MediaKind::Video, 6000, "/v/a.avi")}));
    ASSERT_TRUE(p.ok());
    ASSERT_EQ(p.segments.size(), 3);
    EXPECT_EQ(p.segments[0].kind, SegmentKind::Black);
    EXPECT_EQ(p.segments[0].source, "/app/SystemMedia/Black.jpg");
    EXPECT_EQ(p.segments[1].source, "/p/red.jpg");
    EXPECT_EQ(p.segments[2].kind, SegmentKind::Video);
    EXPECT_EQ(p.segments[1].lengthMs, 4000);
    EXPECT_EQ(p.segments[2].lengthMs, 4000);
    // Frame counts add up to the voice's length, and each item starts at its own time.
    EXPECT_EQ(p.segments[1].firstFrame, frameAt(2));
    EXPECT_EQ(p.segments[2].firstFrame, frameAt(6));
    qint64 frames = 0;
    for (const RenderSegment& s : p.segments)
        frames += s.frames;
    EXPECT_EQ(frames, frameAt(10));
    EXPECT_EQ(p.segments[2].sourceStartMs, 0); // an empty start: from the beginning
    EXPECT_EQ(p.segments[1].partial, p.segments[1].piece + ".part");
    EXPECT_TRUE(p.segments[1].piece.startsWith("/w/Render1/"));
}

TEST(RenderPlan, ManyShortItemsNeverDriftByMoreThanHalfAFrame) {
    QList<TimelineEvent> rows;
    for (int i = 0; i < 200; ++i)
        rows << Event(MediaKind::Pictures, i * 317, "/p/x.jpg");
    const RenderPlan p = plan(inputs(70000, rows));
    ASSERT_EQ(p.segments.size(), 200);
    for (const RenderSegment& s : p.segments) {
        const double shownAt = s.firstFrame * 1001.0 / 30000.0 * 1000.0;
        EXPECT_LE(std::abs(shownAt - double(s.startMs)), 1001.0 / 60.0 + 0.01) << s.number;
    }
    EXPECT_EQ(p.segments.last().firstFrame + p.segments.last().frames, frameAt(70));
}

TEST(RenderPlan, PiecesAreNamedByWhatTheyShowSoTheyAreFoundAgain) {
    // The same picture at the same length shares one piece; an inserted item moves no name.
    const RenderPlan before = plan(inputs(6000, {Event(MediaKind::Pictures, 0, "/p/a.jpg"),
                                                 Event(MediaKind::Pictures, 2000, "/p/b.jpg"),
                                                 Event(MediaKind::Pictures, 4000, "/p/a.jpg")}));
    EXPECT_EQ(before.segments[0].piece, before.segments[2].piece);
    EXPECT_EQ(before.distinctPieces().size(), 2);
    const RenderPlan after = plan(inputs(8000, {Event(MediaKind::Pictures, 0, "/p/new.jpg"),
                                                Event(MediaKind::Pictures, 2000, "/p/a.jpg"),
                                                Event(MediaKind::Pictures, 4000, "/p/b.jpg"),
                                                Event(MediaKind::Pictures, 6000, "/p/a.jpg")}));
    EXPECT_EQ(after.segments[2].piece, before.segments[1].piece);
    EXPECT_NE(after.segments[0].piece, before.segments[0].piece);
}

// The key must change with everything that changes what a piece shows, or a render reuses a
// wrong piece; and with nothing else, or a render makes again what it already has.
TEST(PieceRecipe, KeyChangesWithEveryInputThatMattersAndNothingElse) {
    QTemporaryDir dir;
    const QString pic = dir.filePath("pic.jpg");
    const QString other = dir.filePath("other.jpg");
    for (const QString& file : {pic, other}) {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("picture");
    }
    const QDateTime then = QDateTime::currentDateTime().addSecs(-60);
    setModified(pic, then);
    auto make = [&] {
        return PieceRecipe::of(SegmentKind::Still, pic, 0, 90, QSize(320, 240), FrameRate::ntsc(),
                               "-c:v mpeg4");
    };
    const QString key = make().key();
    EXPECT_EQ(make().key(), key);
    EXPECT_EQ(key.size(), 20);
    // A still's start in its source means nothing.
    EXPECT_EQ(PieceRecipe::of(SegmentKind::Still, pic, 5000, 90, QSize(320, 240), FrameRate::ntsc(),
                              "-c:v mpeg4")
                  .key(),
              key);

    PieceRecipe kind = make(), source = make(), frames = make(), size = make(), rate = make(),
                encoder = make();
    kind.kind = SegmentKind::Black;
    source.source = other;
    frames.frames = 91;
    size.frameSize = QSize(320, 180);
    rate.rate = {25, 1};
    encoder.encoderOptions = "-c:v mpeg4 -q:v 3";
    for (const auto& [what, changed] : {std::pair{"kind", kind},
                                        {"source", source},
                                        {"frames", frames},
                                        {"size", size},
                                        {"rate", rate},
                                        {"encoder", encoder}})
        EXPECT_NE(changed.key(), key) << what;
    auto video = [&](qint64 startMs) {
        return PieceRecipe::of(SegmentKind::Video, pic, startMs, 90, QSize(320, 240),
                               FrameRate::ntsc(), "-c:v mpeg4")
            .key();
    };
    EXPECT_NE(video(0), video(1));
    // The same file name with new content, or only a new time.
    setModified(pic, then.addSecs(30));
    EXPECT_NE(make().key(), key);
    QFile f(pic);
    ASSERT_TRUE(f.open(QIODevice::Append));
    f.write("!");
    f.close();
    setModified(pic, then);
    EXPECT_NE(make().key(), key);
}

TEST(RenderPlan, RowsThatShowNothingLeaveThePreviousItemOnScreen) {
    const RenderPlan p = plan(inputs(
        10000,
        {Event(MediaKind::Pictures, 1000, "/p/a.jpg"),
         Event(MediaKind::Untyped, 3000, "/m/song.mid"), Event(MediaKind::Audio, 4000, "/m/a.mp3"),
         Event(MediaKind::Pictures, 5000, ""), Event(MediaKind::Text, 6000, "/w/Hello.jpg"),
         Event(MediaKind::Pictures, 6000, "/p/b.jpg"), Event(MediaKind::Both, 8000, "/w/Bye.jpg"),
         Event(MediaKind::Pictures, 12000, "/p/late.jpg")}));
    ASSERT_EQ(p.segments.size(), 4);
    EXPECT_EQ(p.segments[1].source, "/p/a.jpg");
    EXPECT_EQ(p.segments[1].lengthMs, 5000);
    EXPECT_EQ(p.segments[2].source, "/p/b.jpg"); // the later of two rows at 6 s
    EXPECT_EQ(p.segments[2].firstFrame, frameAt(6));
    EXPECT_EQ(p.segments[3].source, "/w/Bye.jpg");
    EXPECT_EQ(p.segments[3].kind, SegmentKind::Still);
    EXPECT_EQ(p.segments[3].lengthMs, 2000); // the row beyond the recording adds nothing
}

TEST(RenderPlan, AVideoIsCutFromTheTimeItsRowStartsIt) {
    const RenderInputs in = inputs(10000, {Event(MediaKind::Video, 0, "/v/a.avi", 12500),
                                           Event(MediaKind::Video, 4000, "/v/b.avi", 500),
                                           Event(MediaKind::Pictures, 7000, "/p/a.jpg")});
    EXPECT_EQ(plan(in).segments[0].sourceStartMs, 12500);
    EXPECT_EQ(plan(in).segments[1].sourceStartMs, 500);
}

TEST(RenderPlan, NoEventsGivesTheVoiceAloneAndBadInputsAreRefused) {
    RenderInputs in = inputs(3000, {});
    in.output = QStringLiteral("/w/FinalMix.mp3");
    const RenderPlan voice = plan(in);
    EXPECT_TRUE(voice.audioOnly);
    EXPECT_TRUE(voice.segments.isEmpty());

    EXPECT_FALSE(plan(inputs(0, {Event(MediaKind::Pictures, 0, "/p/a.jpg")})).ok());
    RenderInputs noSize = inputs(3000, {Event(MediaKind::Pictures, 0, "/p/a.jpg")});
    noSize.frameSize = {};
    EXPECT_FALSE(plan(noSize).ok());
}
