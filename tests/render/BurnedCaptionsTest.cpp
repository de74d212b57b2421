#include "support/TestRows.h"

#include "render/BurnedCaptions.h"
#include "render/RenderPlan.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;
using test::Event;

namespace {

const FrameRate k25{25, 1}; // 40 ms a frame: times and frames are easy to read

// The Dialogue lines of a script.
QStringList dialogues(const QByteArray& script) {
    QStringList lines;
    for (const QString& line : QString::fromUtf8(script).split(u'\n'))
        if (line.startsWith(u"Dialogue:"))
            lines << line;
    return lines;
}

struct Plan {
    QTemporaryDir dir;
    RenderInputs in;

    Plan() {
        in.rows = {Event(MediaKind::Pictures, 0, dir.filePath("red.jpg")),
                   Event(MediaKind::Video, 2000, dir.filePath("clip.avi"), 1000)};
        in.recordingMs = 4000;
        in.frameRate = k25;
        in.workFolder = dir.path();
        in.blackPicture = dir.filePath("black.jpg");
        in.output = dir.filePath("out.avi");
    }
    RenderPlan build() const {
        return BuildRenderPlan(in, {dir.path(), dir.filePath("out.part.avi")}, {});
    }
};

} // namespace

TEST(BurnedCaptions, CuesAreCutToThePieceInWholeFrames) {
    const CaptionCues cues{{500, 1500, "one"},
                           {1900, 2600, "two\r\n\r\nlines"},
                           {3000, 3000, "x"},
                           {3100, 3500, " \n "}};
    // A piece of frames 25..74 (1.0 s to 3.0 s).
    const PieceCues shown = PieceCuesOf(cues, k25, 25, 50);
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[0], (PieceCue{0, 13, "one"}));         // cut at the piece's start
    EXPECT_EQ(shown[1], (PieceCue{23, 40, "two\nlines"})); // blank lines dropped
    EXPECT_TRUE(PieceCuesOf(cues, k25, 90, 10).isEmpty()); // only an empty cue there

    // Edges inside a stretch, each once and in order; none for empty cues or at the ends.
    EXPECT_EQ(CueEdgesWithin(cues, k25, 0, 100), (QList<qint64>{13, 38, 48, 65}));
    EXPECT_EQ(CueEdgesWithin(cues, k25, 13, 38), (QList<qint64>{}));
    EXPECT_EQ(CueEdgesWithin({{500, 1500, "a"}, {1500, 2000, "b"}}, k25, 0, 100),
              (QList<qint64>{13, 38, 50}));
}

TEST(BurnedCaptions, ScriptShowsHostileTextLiterallyBetweenFrames) {
    const PieceCues cues{{0, 10, "{\\an8}up \\N no\nsecond"}, {25, 3000, "a, b: 'c' [d]; e\u00e4"}};
    const QByteArray script = BurnedCaptionsScript(cues, k25, QSize(320, 240));
    const QString text = QString::fromUtf8(script);
    EXPECT_TRUE(text.contains("PlayResX: 384\nPlayResY: 288")) << script.toStdString();
    EXPECT_TRUE(text.contains("Style: Caption,Liberation Sans,"));
    const QStringList lines = dialogues(script);
    ASSERT_EQ(lines.size(), 2);
    // Braces cannot open an override and a backslash cannot start "\N": one line break only.
    EXPECT_EQ(lines[0], QString::fromUtf8("Dialogue: 0,0:00:00.00,0:00:00.38,Caption,,0,0,0,,"
                                          "\\{\\\u2060an8\\}up \\\u2060N no\\Nsecond"));
    // Each edge halfway between two frames: 24.5 and 2999.5 frames of 40 ms.
    EXPECT_EQ(lines[1], QString::fromUtf8("Dialogue: 0,0:00:00.98,0:01:59.98,Caption,,0,0,0,,"
                                          "a, b: 'c' [d]; e\u00e4"));
    // A wide frame widens the script rather than stretching the letters.
    EXPECT_TRUE(QString::fromUtf8(BurnedCaptionsScript(cues, k25, QSize(480, 270)))
                    .contains("PlayResX: 512\n"));
}

TEST(BurnedCaptions, OnlyStillsAreCutAtCuesAndOnlyPiecesUnderACueChangeName) {
    Plan p;
    const RenderPlan plain = p.build();
    ASSERT_EQ(plain.segments.size(), 2);

    p.in.burnCaptions = true;
    p.in.captions = {{500, 1000, "first"}, {2500, 3000, "second"}};
    const RenderPlan burned = p.build();
    ASSERT_EQ(burned.segments.size(), 4);
    // The picture before, under and after the first cue; the video whole, its cue moved to it.
    QList<std::pair<qint64, qint64>> frames;
    for (const RenderSegment& s : burned.segments)
        frames << std::pair{s.firstFrame, s.frames};
    EXPECT_EQ(frames, (QList<std::pair<qint64, qint64>>{{0, 13}, {13, 12}, {25, 25}, {50, 50}}));
    EXPECT_TRUE(burned.segments[0].captions.isEmpty());
    EXPECT_EQ(burned.segments[1].captions, (PieceCues{{0, 12, "first"}}));
    EXPECT_EQ(burned.segments[3].captions, (PieceCues{{13, 25, "second"}}));

    // Captions that only the video's piece shows leave the picture's piece as it was.
    p.in.captions = {{2500, 3000, "second"}};
    const RenderPlan videoOnly = p.build();
    ASSERT_EQ(videoOnly.segments.size(), 2);
    EXPECT_EQ(videoOnly.segments[0].piece, plain.segments[0].piece);
    EXPECT_NE(videoOnly.segments[1].piece, plain.segments[1].piece);
}
