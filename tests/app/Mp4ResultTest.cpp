#include "OnePictureTake.h"

#include "app/widgets/MediaStation.h"
#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "library/playback/MediaPlayer.h"
#include "library/widgets/DisplayPlace.h"
#include "render/widgets/RenderPanel.h"
#include "studio/AppPaths.h"
#include "studio/FinalMix.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

// Chosen beside the video size, MP4 is what Render writes, what the display place shows after
// it, and what Play Rendered plays; AVI stays the choice of a new studio.
TEST(Mp4Result, RenderWithMp4ChosenShowsTheMp4) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    const AppPaths& paths = w->paths();
    ASSERT_NO_FATAL_FAILURE(test::PrepareOnePictureTake(*w, app, Qt::blue, 500));

    auto* format = w->findChild<QComboBox*>("cboVideoFormat");
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->currentText(), "AVI");
    format->setCurrentText("MP4");

    w->findChild<QAbstractButton*>("cmdPause")->click();
    w->renderPanel().setQuiet(true);
    QSignalSpy done(&w->renderPanel(), &RenderPanel::renderFinished);
    w->findChild<QAbstractButton*>("cmdRender")->click();
    ASSERT_TRUE(done.wait(110000));
    ASSERT_TRUE(w->renderPanel().lastReport().ok())
        << w->renderPanel().lastReport().message.toStdString();
    EXPECT_EQ(w->renderPanel().lastReport().output, paths.gstrFinalMixMP4FileSpec);
    EXPECT_EQ(LatestFinalMix(paths), paths.gstrFinalMixMP4FileSpec);

    MediaPlayer* video = w->media().videoPlayer();
    EXPECT_EQ(video->URL(), paths.gstrFinalMixMP4FileSpec);
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Video);
    // Playing needs a sound device: without one the player's sound thread fails.
    if (qEnvironmentVariableIsEmpty("CLIPQUILL_TEST_AUDIO"))
        return;
    video->close();
    w->findChild<QAbstractButton*>("cmdPlayRendered")->click();
    EXPECT_EQ(video->URL(), paths.gstrFinalMixMP4FileSpec);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return video->playState() == static_cast<int>(PlayState::Playing); }, 10000));
}
