#include "app/widgets/KeepAwake.h"
#include "app/widgets/MediaStation.h"
#include "app/widgets/frmClipquill.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "library/widgets/DisplayPlace.h"
#include "render/widgets/RenderPanel.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "timeline/EventGridModel.h"
#include "timeline/widgets/TimelineStudio.h"

#include <QAbstractButton>
#include <QImage>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {
QAbstractButton* button(frmClipquill& w, const char* name) {
    auto* b = w.findChild<QAbstractButton*>(name);
    EXPECT_NE(b, nullptr) << name;
    return b;
}

bool waitsToBePlayed(const MediaPlayer* player) {
    const int state = player->playState();
    return state == static_cast<int>(PlayState::Paused) ||
           state == static_cast<int>(PlayState::Ready);
}
} // namespace

// A recording of two seconds with one picture, rendered for real from the window.
TEST(RenderResult, ARenderedVideoTakesTheDisplayPlaceReadyToPlay) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    const AppPaths& paths = w->paths();
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString red = app.file("red.jpg");
    ASSERT_TRUE(picture.save(red));
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg", {"-hide_banner", "-loglevel", "error", "-f", "lavfi", "-i",
                            "sine=frequency=440:duration=2", "-ar", "44100", "-ac", "1", "-c:a",
                            "pcm_s16le", "-y", paths.gstrRecordedAudioFileSpec});
    ASSERT_TRUE(ffmpeg.waitForFinished(30000));
    ASSERT_EQ(ffmpeg.exitCode(), 0) << ffmpeg.readAllStandardError().toStdString();
    ASSERT_TRUE(w->timeline().grid().appendRowText("1\tPictures\t1.000\t\t" + red));
    w->recordingState().gdblRecordingLength = 2.0;

    // Stop, as at the end of the recording, ends the keep-alive.
    button(*w, "cmdPause")->click();
    QTimer& keepAlive = w->keepAwake().tmrMoveMouseToPreventScreenSaver();
    ASSERT_FALSE(keepAlive.isActive());
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplayPlace::PictureSurface);

    w->renderPanel().setQuiet(true);
    QSignalSpy done(&w->renderPanel(), &RenderPanel::renderFinished);
    button(*w, "cmdRender")->click();
    ASSERT_TRUE(done.wait(110000));
    ASSERT_TRUE(w->renderPanel().lastReport().ok())
        << w->renderPanel().lastReport().message.toStdString();

    MediaPlayer* video = w->media().WMPAudio(0);
    EXPECT_EQ(video->URL(), paths.gstrFinalMixAVIFileSpec);
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplayPlace::VideoSurface);
    EXPECT_TRUE(w->media().WindowsMediaPlayer1()->isVisible());
    EXPECT_EQ(video->volume(), 90);
    EXPECT_TRUE(keepAlive.isActive());
    EXPECT_EQ(keepAlive.interval(), 50000);
    EXPECT_TRUE(w->statusText()->text().contains(paths.gstrFinalMixAVIFileSpec))
        << w->statusText()->text().toStdString();
    // Loaded, not started: the user presses play.
    EXPECT_TRUE(QTest::qWaitFor([&] { return waitsToBePlayed(video); }, 10000))
        << "play state " << video->playState();
    QTest::qWait(300);
    EXPECT_TRUE(waitsToBePlayed(video)) << "play state " << video->playState();

    // A cancelled render does not leave the status claiming a new result.
    button(*w, "cmdRender")->click();
    button(*w, "cmdCancelRender")->click();
    ASSERT_TRUE(done.wait(110000));
    EXPECT_EQ(w->statusText()->text(), "The render was cancelled.");
}

TEST(RenderResult, PlayRenderedPlaysAtVolumeNinety) {
    if (qEnvironmentVariableIsEmpty("CLIPQUILL_TEST_AUDIO"))
        GTEST_SKIP() << "no test sound server";
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg",
                 {"-hide_banner", "-loglevel", "error", "-f", "lavfi", "-i",
                  "testsrc=size=160x120:rate=25:duration=3", "-f", "lavfi", "-i", "sine=duration=3",
                  "-c:v", "mpeg4", "-c:a", "pcm_s16le", "-y", w->paths().gstrFinalMixAVIFileSpec});
    ASSERT_TRUE(ffmpeg.waitForFinished(30000));
    ASSERT_EQ(ffmpeg.exitCode(), 0) << ffmpeg.readAllStandardError().toStdString();
    button(*w, "cmdPause")->click();
    w->media().WMPAudio(0)->setVolume(40);

    button(*w, "cmdPlayRendered")->click();
    MediaPlayer* video = w->media().WMPAudio(0);
    EXPECT_EQ(video->URL(), w->paths().gstrFinalMixAVIFileSpec);
    EXPECT_EQ(video->volume(), 90);
    EXPECT_TRUE(w->keepAwake().tmrMoveMouseToPreventScreenSaver().isActive());
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplayPlace::VideoSurface);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return video->playState() == static_cast<int>(PlayState::Playing); }, 10000));
}
