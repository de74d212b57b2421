#include "render/MediaFileInfo.h"
#include "studio/AppPaths.h"
#include "support/TestAppFolder.h"

#include "platform/TextFiles.h"
#include "platform/ToolRunner.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace cq;

namespace {
QString fixture(const QString& name) {
    return ReadFileToString(QStringLiteral(CQ_RENDER_FIXTURES "/") + name);
}
} // namespace

TEST(MediaProbeParse, OldStyleLinesGiveEveryField) {
    const MediaFileInfo info = GetFileInfoVars(QStringLiteral(
        "Input #0, avi, from 'a.avi':\r\n"
        "  Duration: 00:00:05.00, start: 0.000000, bitrate: 1411 kb/s\r\n"
        "  Stream #0.0: Video: mjpeg, yuvj420p, 640x480 [PAR 1:1 DAR 4:3], 25 tbr\r\n"
        "  Stream #0.1: Audio: pcm_s16le, 44100 Hz, 2 channels, s16, 1411 kb/s\r\n"));
    EXPECT_EQ(info.durationMs(), 5000);
    EXPECT_EQ(info.Bitrate, "1411");
    EXPECT_EQ(info.VideoCodec, "mjpeg");
    EXPECT_EQ(info.VideoPixelFormat, "yuvj420p");
    EXPECT_EQ(info.FrameSize, "640x480 [PAR 1:1 DAR 4:3]");
    EXPECT_EQ(info.Width, "640");
    EXPECT_EQ(info.Height, "480 [PAR 1:1 DAR 4:3]");
    EXPECT_EQ(info.FrameRate, "25");
    EXPECT_EQ(info.AudioCodec, "pcm_s16le");
    EXPECT_EQ(info.AudioSampleRate, "44100");
    EXPECT_EQ(info.AudioChannels, "2 channels");
    EXPECT_EQ(info.AudioBits, "16");
}

TEST(MediaProbeParse, FrameRatesKeepNtscPointOnly) {
    EXPECT_EQ(GetFileInfoVars("Video: mpeg4, yuv420p, 320x240, 29.97 fps\n").FrameRate, "29.97");
    EXPECT_EQ(GetFileInfoVars("Video: mpeg4, yuv420p, 320x240, 23.98 fps\n").FrameRate, "2398");
}

TEST(MediaProbeParse, Ffmpeg51VideoWithSound) {
    // Commas inside "yuvj444p(pc, bt470bg/...)" and a bit rate before the frame rate.
    const MediaFileInfo avi = GetFileInfoVars(fixture("probe-clip.avi.txt"));
    EXPECT_EQ(avi.Duration, "5.00");
    EXPECT_EQ(avi.Bitrate, "3532");
    EXPECT_EQ(avi.VideoCodec, "mjpeg");
    EXPECT_EQ(avi.VideoPixelFormat, "yuvj444p(pc, bt470bg/unknown/unknown)");
    EXPECT_EQ(avi.Width, "640");
    EXPECT_TRUE(avi.Height.startsWith("480")) << avi.Height.toStdString();
    EXPECT_EQ(avi.FrameRate, "25");
    EXPECT_EQ(avi.AudioCodec, "pcm_s16le");
    EXPECT_EQ(avi.AudioSampleRate, "44100");
    EXPECT_EQ(avi.AudioChannels, "stereo");
    EXPECT_EQ(avi.AudioBits, "16");

    const MediaFileInfo mp4 = GetFileInfoVars(fixture("probe-clip.mp4.txt"));
    EXPECT_EQ(mp4.durationMs(), 3000);
    EXPECT_EQ(mp4.VideoCodec, "h264");
    EXPECT_EQ(mp4.FrameSize.left(8), "1280x720");
    EXPECT_EQ(mp4.FrameRate, "29.97");
    EXPECT_EQ(mp4.AudioCodec, "aac");
    EXPECT_EQ(mp4.AudioBits, ""); // "fltp" carries no bit count
}

TEST(MediaProbeParse, SoundOnlyPictureOnlyAndUnknownLengths) {
    const MediaFileInfo wav = GetFileInfoVars(fixture("probe-voice.wav.txt"));
    EXPECT_EQ(wav.durationMs(), 7040);
    EXPECT_FALSE(wav.hasVideo());
    EXPECT_TRUE(wav.FrameSize.isEmpty() && wav.Width.isEmpty() && wav.FrameRate.isEmpty());
    EXPECT_EQ(wav.AudioChannels, "mono");

    const MediaFileInfo jpg = GetFileInfoVars(fixture("probe-pic.jpg.txt"));
    EXPECT_TRUE(jpg.Duration.isEmpty()); // "Duration: N/A"
    EXPECT_EQ(jpg.durationMs(), -1);
    EXPECT_TRUE(jpg.Bitrate.isEmpty());
    EXPECT_FALSE(jpg.hasAudio());
    EXPECT_EQ(jpg.Width, "800");
    EXPECT_TRUE(jpg.Height.startsWith("300 "));
}

TEST(MediaProbeParse, GarbageAndTruncatedTextLeaveFieldsEmpty) {
    for (const QString& text :
         {fixture("probe-garbage.avi.txt"), QString(), QStringLiteral("Duration: 00:00:0"),
          QStringLiteral("Video: "), QStringLiteral("\x01\x02 Audio:,,,,,")}) {
        const MediaFileInfo info = GetFileInfoVars(text);
        EXPECT_TRUE(info.Duration.isEmpty()) << text.toStdString();
        EXPECT_TRUE(info.Width.isEmpty());
        EXPECT_TRUE(info.AudioSampleRate.isEmpty());
    }
    // A last line without a line end still counts to the end of the text.
    EXPECT_EQ(GetFileInfoVars("Audio: mp2, 22050 Hz, mono, s16p").AudioSampleRate, "22050");
}
