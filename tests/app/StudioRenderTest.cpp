#include "app/StudioRender.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/TestRows.h"

#include <gtest/gtest.h>

using namespace cq;

// What the user types never reaches a script: a size is digits, X, digits, or it is refused.
TEST(StudioRender, OnlyDigitsXDigitsIsAFrameSize) {
    EXPECT_EQ(ParseFrameSize("320X240"), QSize(320, 240));
    EXPECT_EQ(ParseFrameSize("1280x720"), QSize(1280, 720));
    for (const char* bad : {"320x\n240", "320X240\n", " 320X240", "320X240 ", "320 X 240",
                            "320X240;ls", "321X240", "8X8", "99999X240", "X240", "320X", "big", ""})
        EXPECT_FALSE(ParseFrameSize(QString::fromUtf8(bad)).isValid()) << bad;
    // Digits of other scripts are no digits to ffmpeg.
    EXPECT_FALSE(ParseFrameSize(QString::fromUtf8("\u0663\u0662\u0660X240")).isValid());
}

// "29.97" taken literally would drift from NTSC by a frame every 33 seconds.
TEST(StudioRender, FrameRatesAreExactFractions) {
    EXPECT_EQ(ParseFrameRate("29.97"), (FrameRate{30000, 1001}));
    EXPECT_EQ(ParseFrameRate("25"), (FrameRate{25, 1}));
    EXPECT_EQ(ParseFrameRate("12.5"), (FrameRate{25, 2}));
    EXPECT_EQ(ParseFrameRate("24000/1001"), (FrameRate{24000, 1001}));
    for (const char* bad : {"", "25;reboot", "0", "25/0", "fast", "-25"})
        EXPECT_EQ(ParseFrameRate(bad), FrameRate::ntsc()) << bad;
    EXPECT_EQ(FrameRate::ntsc().frameAt(1001), 30);
    EXPECT_EQ(FrameRate::ntsc().frameAt(600000), 17982);
}

TEST(StudioRender, RequestCarriesTheTypedValuesOrRefusesABadSize) {
    const AppPaths paths = AppPaths::forFolder("/app");
    StudioSettings studio;
    studio.gstrVideoRes = "640x480";
    const QList<TimelineEvent> rows{test::Event(MediaKind::Pictures, 0, "/p/a.jpg")};
    const RenderRequest request =
        StudioRenderRequest(paths, studio, rows, "/w/voice.wav", 3000, {});
    ASSERT_TRUE(request.ok());
    EXPECT_EQ(request.inputs.frameSize, QSize(640, 480));
    EXPECT_EQ(request.inputs.frameRate, FrameRate::ntsc());
    EXPECT_EQ(request.inputs.output, paths.gstrFinalMixAVIFileSpec);
    EXPECT_EQ(StudioRenderRequest(paths, studio, {}, "/w/voice.wav", 3000, {}).inputs.output,
              paths.gstrFinalMixMP3FileSpec);

    studio.gstrVideoRes = "640X480;reboot";
    const RenderRequest refused = StudioRenderRequest(paths, studio, rows, "/w/v.wav", 3000, {});
    EXPECT_FALSE(refused.ok());
    EXPECT_TRUE(refused.problem.contains("640X480;reboot")) << refused.problem.toStdString();
}
