#include "render/MediaFileInfo.h"

#include "platform/TextFiles.h"

#include <gtest/gtest.h>

using namespace cq;

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
    EXPECT_TRUE(GetFileInfoVars("Audio: mp2, 22050 Hz, mono, s16p").hasAudio);
    for (const QString& text :
         {fixture("probe-garbage.avi.txt"), QString(), QStringLiteral("Video: "),
          QStringLiteral("Audio: "), QStringLiteral("\x01\x02 Audio:,,,,,")})
        EXPECT_FALSE(GetFileInfoVars(text).hasAudio) << text.toStdString();
}
