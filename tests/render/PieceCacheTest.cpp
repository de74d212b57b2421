#include "RenderTestMedia.h"
#include "TestRows.h"

#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "render/AviFrameCount.h"
#include "render/PieceCache.h"
#include "render/RenderPlan.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;
using test::Row;

namespace {

struct MadePiece {
    QTemporaryDir dir;
    RenderInputs in;
    RenderPlan plan;

    MadePiece() {
        in.rows = {Row(1, "Pictures", "0.000", dir.filePath("pic.jpg"))};
        in.recordingMs = 2000;
        in.workFolder = dir.path();
        in.ffmpeg = LocateTool({}, "ffmpeg", "ffmpeg").path;
        in.blackPicture = dir.filePath("pic.jpg");
        in.output = dir.filePath("out.avi");
        test::RenderTestMedia media(in.ffmpeg, {});
        media.solidPicture(dir.filePath("pic.jpg"), "red", 320, 240);
        plan = BuildRenderPlan(in);
    }
    const RenderSegment& segment() const { return plan.segments.first(); }
    bool make() const {
        ToolRunner runner;
        return runner.runScript(segment().line, dir.filePath("make.sh")).ok();
    }
};

} // namespace

TEST(PieceCache, OnlyAWholePieceWithItsKeyIsReused) {
    MadePiece m;
    const PieceCache cache(m.in.workFolder);
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

    // The source changed under the same name: its piece is stale.
    ASSERT_TRUE(m.make());
    ASSERT_EQ(cache.accept(s, true), "");
    test::RenderTestMedia(m.in.ffmpeg, {}).solidPicture(s.source, "blue", 320, 240);
    QFile(s.source).setFileTime(QDateTime::currentDateTime().addSecs(5),
                                QFileDevice::FileModificationTime);
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
