#include "RenderFixture.h"

#include "platform/TextFiles.h"
#include "render/MediaFileInfo.h"

#include <gtest/gtest.h>

using namespace cq;
using test::ColourName;
using test::Event;
using test::RenderEndToEnd;

namespace {
QString fixture(const QString& name) {
    return ReadFileToString(QStringLiteral(CQ_RENDER_FIXTURES "/") + name);
}
} // namespace

// Only a video with a sound track may be mixed under the voice: ffmpeg fails the whole mix when
// it is asked for a sound stream that is not there.
TEST(MediaProbeParse, SoundIsFoundOnlyWhereThereIsASoundStream) {
    EXPECT_TRUE(GetFileInfoVars(fixture("probe-clip.avi.txt")).hasAudio);
    EXPECT_TRUE(GetFileInfoVars(fixture("probe-clip.mp4.txt")).hasAudio);
    EXPECT_TRUE(GetFileInfoVars(fixture("probe-voice.wav.txt")).hasAudio);
    EXPECT_FALSE(GetFileInfoVars(fixture("probe-pic.jpg.txt")).hasAudio);
    // Old-style lines, and a last line without a line end.
    EXPECT_TRUE(
        GetFileInfoVars("  Stream #0.1: Audio: pcm_s16le, 44100 Hz, 2 channels\r\n").hasAudio);
    EXPECT_TRUE(GetFileInfoVars("  Stream #0:1[0x2](eng): Audio: mp2, 22050 Hz").hasAudio);
    for (const QString& text :
         {fixture("probe-garbage.avi.txt"), QString(), QStringLiteral("Video: "),
          QStringLiteral("Audio: "), QStringLiteral("Audio: mp2, 22050 Hz, mono, s16p"),
          QStringLiteral("\x01\x02 Audio:,,,,,"), QStringLiteral("  Stream #0:1: Audio: ")})
        EXPECT_FALSE(GetFileInfoVars(text).hasAudio) << text.toStdString();
}

// A silent video whose name or title holds the words of a sound stream has no sound; a name that
// holds whole lines of a description is taken out before the description is read.
TEST(MediaProbeParse, NamesAndTagsNeverPassForStreamsOrLengths) {
    const QString silent =
        QStringLiteral("Input #0, mov,mp4,m4a,3gp,3g2,mj2, from 'Audio: aac, 44100 Hz.mp4':\n"
                       "  Metadata:\n"
                       "    title           : Audio: aac (LC), 44100 Hz\n"
                       "                    : Stream #0:1: Audio: aac\n"
                       "  Duration: 00:00:05.00, start: 0.000000, bitrate: 36 kb/s\n"
                       "  Stream #0:0[0x1](und): Video: h264 (High) (avc1 / 0x31637661), "
                       "yuv420p(progressive), 160x120, 30 fps (default)\n");
    const MediaFileInfo info = GetFileInfoVars(silent);
    EXPECT_FALSE(info.hasAudio);
    EXPECT_EQ(info.durationMs, 5000);

    const QString name = QStringLiteral("x\n  Duration: 00:09:00.00, start: 0\n"
                                        "  Stream #0:1: Audio: mp2, 44100 Hz\n.mp4");
    const QString forged = QStringLiteral("Input #0, mov, from '") + name +
                           QStringLiteral("':\n  Duration: 00:00:02.50, start: 0.000000\n"
                                          "  Stream #0:0: Video: h264, 160x120\n");
    EXPECT_TRUE(GetFileInfoVars(forged).hasAudio); // read without its name, the lie counts
    const MediaFileInfo named = GetFileInfoVars(forged, name);
    EXPECT_FALSE(named.hasAudio);
    EXPECT_EQ(named.durationMs, 2500);
    // A short name is taken out only where it is the input's, not from the words of the streams.
    const QString mp2 = QStringLiteral("Input #0, mp3, from 'Audio':\n  Duration: 00:00:01.00,\n"
                                       "  Stream #0:0: Audio: mp2, 44100 Hz\n");
    EXPECT_TRUE(GetFileInfoVars(mp2, QStringLiteral("Audio")).hasAudio);
    EXPECT_TRUE(GetFileInfoVars(mp2, QStringLiteral("mp2")).hasAudio);
    EXPECT_EQ(GetFileInfoVars(fixture("probe-clip.mp4.txt")).durationMs, 3000);
}

TEST_F(RenderEndToEnd, ASilentVideoNamedLikeASoundStreamRendersWithTheVideosSound) {
    const QString voice = makeVoice(2.0);
    const QString silent = mediaFile("Audio: aac, 44100 Hz.mp4");
    ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "color=c=green:s=160x120:d=1.5", "-metadata",
                           "title=Audio: aac (LC), 44100 Hz", "-c:v", "libx264", "-y", silent}));
    studio.keepVideoSound = true;
    const RenderReport report = render(inputsFor({Event(MediaKind::Video, 500, silent)}, voice));
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_TRUE(report.failedItems.isEmpty());
    EXPECT_EQ(ColourName(media.colourAt(paths.gstrFinalMixAVIFileSpec, 1.0)), "green");
}

// ffmpeg makes no frame of a video cut from past its end: the user learns which row and why.
TEST_F(RenderEndToEnd, AVideoRowStartingPastTheVideosEndIsNamedWithBothTimes) {
    const QString voice = makeVoice(3.0);
    const QString clip = mediaFile("clip.avi");
    const QString red = makePicture("red.jpg", "red", 160, 120);
    ASSERT_TRUE(media.toneVideo(clip, "green", 2.0, 1000));
    const RenderReport report = render(
        inputsFor({Event(MediaKind::Pictures, 0, red), Event(MediaKind::Video, 1000, clip, 500),
                   Event(MediaKind::Video, 2000, clip, 12000)},
                  voice));
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_EQ(report.failedItems, QStringList{clip});
    EXPECT_TRUE(report.message.contains(
        "\"clip.avi\" (row 3) starts at 12.0 s, after the video's end at 2.0 s."))
        << report.message.toStdString();
    expectSequence(paths.gstrFinalMixAVIFileSpec, {{0.0, "red"}, {1.0, "green"}, {2.0, "black"}});
}
