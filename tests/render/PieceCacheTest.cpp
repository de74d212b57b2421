#include "RenderTestMedia.h"
#include "support/TestRows.h"

#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "render/AviContents.h"
#include "render/PieceCache.h"
#include "render/PieceCommands.h"
#include "render/RenderPlan.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;
using test::Event;

namespace {

struct MadePiece {
    QTemporaryDir dir;
    RenderInputs in;
    RenderPlan plan;

    MadePiece() {
        in.rows = {Event(MediaKind::Pictures, 0, dir.filePath("pic.jpg"))};
        in.recordingMs = 2000;
        in.workFolder = dir.path();
        in.ffmpeg = LocateTool({}, "ffmpeg", "ffmpeg");
        in.blackPicture = dir.filePath("pic.jpg");
        in.output = dir.filePath("out.avi");
        test::RenderTestMedia media(in.ffmpeg.path, {});
        media.solidPicture(dir.filePath("pic.jpg"), "red", 320, 240);
        plan = BuildRenderPlan(in, {dir.path(), dir.filePath("out.part.avi")}, {});
    }
    const RenderSegment& segment() const { return plan.segments.first(); }
    bool make() const {
        ToolRunner runner;
        return runner.run(PieceRunCommand(in, {segment()})).ok();
    }
};

} // namespace

TEST(PieceCache, OnlyAWholePieceWithItsKeyIsReused) {
    MadePiece m;
    const PieceCache cache(m.in.workFolder, *m.in.container);
    const RenderSegment& s = m.segment();
    ASSERT_EQ(s.frames, 60);
    EXPECT_FALSE(cache.isReusable(s));
    ASSERT_TRUE(m.make());
    EXPECT_TRUE(ReadAviContents(s.partial).holds(60));
    EXPECT_EQ(cache.accept(s, true), "");
    EXPECT_FALSE(QFileInfo::exists(s.partial));
    EXPECT_TRUE(cache.isReusable(s));

    // A stand-in is put in place but never passes for the item.
    ASSERT_TRUE(m.make());
    EXPECT_EQ(cache.accept(s, false), "");
    EXPECT_FALSE(cache.isReusable(s));

    // A piece cut short, as by a full disk, is refused however ffmpeg ended.
    ASSERT_TRUE(m.make());
    QFile partial(s.partial);
    ASSERT_TRUE(partial.resize(partial.size() - 700));
    const QString why = cache.accept(s, true);
    EXPECT_TRUE(why.contains(s.partial)) << why.toStdString();
    EXPECT_FALSE(ReadAviContents(s.partial).complete);

    // A piece made whole, whose key was later lost, is not trusted.
    ASSERT_TRUE(m.make());
    ASSERT_EQ(cache.accept(s, true), "");
    ASSERT_TRUE(QFile::remove(PieceCache::keyFileOf(s)));
    EXPECT_FALSE(cache.isReusable(s));
}

TEST(PieceCache, AviReaderCountsFramesFromTheChunksNotTheHeader) {
    MadePiece m;
    ASSERT_TRUE(m.make());
    const QString file = m.segment().partial;
    EXPECT_TRUE(ReadAviContents(file).holds(60));
    QFile f(file);
    ASSERT_TRUE(f.resize(f.size() / 2));
    const AviContents cut = ReadAviContents(file);
    EXPECT_FALSE(cut.complete);
    EXPECT_FALSE(cut.problem.isEmpty());
    EXPECT_FALSE(ReadAviContents(m.dir.filePath("pic.jpg")).complete);
    EXPECT_FALSE(ReadAviContents(m.dir.filePath("missing.avi")).complete);
}

// The render's length check reads the result itself; it must agree with ffprobe on the files
// ffmpeg writes: MPEG-4 with MP2 sound, and a still whose held frames are empty chunks. For PCM
// sound ffprobe gives no length, and the voice's own is the answer.
TEST(PieceCache, AviReaderMeasuresStreamsAsFfprobeDoes) {
    MadePiece m;
    const QString ffprobe = LocateFfprobeBesideFfmpeg({}).path;
    ASSERT_FALSE(ffprobe.isEmpty());
    test::RenderTestMedia media(m.in.ffmpeg.path, ffprobe);
    const QString voice = m.dir.filePath("voice.wav");
    ASSERT_TRUE(media.voice(voice, 7.3));
    const QString video = m.dir.filePath("tone.avi");
    ASSERT_TRUE(media.toneVideo(video, "green", 4.1, 500));
    const QStringList withVoice{"-i",  video,  "-i",  voice,  "-map",
                                "0:v", "-map", "1:a", "-c:v", "mpeg4"};
    struct Case {
        const char* name;
        QStringList args;
        double audioSeconds; // -1: ffprobe's answer; 0: no sound
    };
    const QList<Case> cases{
        {"mp2", withVoice + QStringList{"-c:a", "mp2", "-b:a", "128k"}, -1},
        {"pcm", withVoice + QStringList{"-c:a", "pcm_s16le"}, 7.3},
        {"sparse",
         {"-i", video, "-an", "-vf", "select=lt(n\\,1)+gt(n\\,90)", "-fps_mode", "passthrough",
          "-c:v", "mpeg4"},
         0},
    };
    for (const Case& c : cases) {
        const QString out = m.dir.filePath(QStringLiteral("%1.avi").arg(c.name));
        ASSERT_TRUE(media.run(c.args + QStringList{"-f", "avi", "-y", out})) << c.name;
        const AviContents avi = ReadAviContents(out);
        ASSERT_TRUE(avi.complete) << c.name << avi.problem.toStdString();
        EXPECT_NEAR(avi.durationMs("vids"), media.duration(out, "video") * 1000, 1) << c.name;
        const double audio = c.audioSeconds >= 0 ? c.audioSeconds : media.duration(out, "audio");
        if (audio > 0)
            EXPECT_NEAR(avi.durationMs("auds"), audio * 1000, 1) << c.name;
        else
            EXPECT_EQ(avi.durationMs("auds"), -1) << c.name;
    }
    // Three frames are coded; the empty chunks between them count as frames too.
    const AviContents sparse = ReadAviContents(m.dir.filePath("sparse.avi"));
    EXPECT_EQ(sparse.videoFrames, 103);
    EXPECT_EQ(sparse.streams.size(), 1);
}
