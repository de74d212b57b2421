#include "OnePictureTake.h"

#include "app/StudioRender.h"
#include "app/widgets/KeepAwake.h"
#include "app/widgets/MediaStation.h"
#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "library/widgets/DisplayPlace.h"
#include "platform/ToolPool.h"
#include "render/RenderJob.h"
#include "render/widgets/RenderPanel.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "support/TestAudio.h"
#include "support/TestRows.h"
#include "support/WidgetFinding.h"
#include "timeline/EventGridModel.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QVideoFrame>
#include <QVideoSink>

#include <gtest/gtest.h>

using namespace cq;
using test::Child;

namespace {
QString colourName(const QColor& c) {
    if (c.red() > 180 && c.green() < 80 && c.blue() < 80)
        return QStringLiteral("red");
    if (c.blue() > 180 && c.red() < 80 && c.green() < 80)
        return QStringLiteral("blue");
    return QStringLiteral("other");
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
    ASSERT_NO_FATAL_FAILURE(test::PrepareOnePictureTake(*w, app, Qt::red, 1000));

    // Stop, as at the end of the recording, ends the keep-alive.
    Child<QAbstractButton>(w.get(), "cmdPause")->click();
    QTimer& keepAlive = w->keepAwake().tmrMoveMouseToPreventScreenSaver();
    ASSERT_FALSE(keepAlive.isActive());
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Picture);

    w->renderPanel().setQuiet(true);
    QSignalSpy done(&w->renderPanel(), &RenderPanel::renderFinished);
    Child<QAbstractButton>(w.get(), "cmdRender")->click();
    ASSERT_TRUE(done.wait(110000));
    ASSERT_TRUE(w->renderPanel().lastReport().ok())
        << w->renderPanel().lastReport().message.toStdString();

    MediaPlayer* video = w->media().videoPlayer();
    EXPECT_EQ(video->URL(), paths.gstrFinalMixAVIFileSpec);
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Video);
    EXPECT_TRUE(w->media().WindowsMediaPlayer1()->isVisible());
    EXPECT_EQ(video->volume(), 90);
    EXPECT_TRUE(keepAlive.isActive());
    EXPECT_TRUE(w->statusText()->text().contains(paths.gstrFinalMixAVIFileSpec))
        << w->statusText()->text().toStdString();
    // Loaded, not started: the user presses play. A player told to play goes from loading
    // straight to playing, so it never waits here.
    EXPECT_TRUE(QTest::qWaitFor([&] { return waitsToBePlayed(video); }, 10000))
        << "play state " << video->playState();

    // A cancelled render does not leave the status claiming a new result.
    Child<QAbstractButton>(w.get(), "cmdRender")->click();
    Child<QAbstractButton>(w.get(), "cmdCancelRender")->click();
    ASSERT_TRUE(done.wait(110000));
    EXPECT_EQ(w->statusText()->text(), "The render was cancelled.");
}

TEST(RenderResult, PlayRenderedPlaysAtVolumeNinety) {
    REQUIRE_AUDIO();
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    ASSERT_TRUE(test::MakeMedia({"-f", "lavfi", "-i", "testsrc=size=160x120:rate=25:duration=3",
                                 "-f", "lavfi", "-i", "sine=duration=3", "-c:v", "mpeg4", "-c:a",
                                 "pcm_s16le", w->paths().gstrFinalMixAVIFileSpec}));
    Child<QAbstractButton>(w.get(), "cmdPause")->click();
    w->media().videoPlayer()->setVolume(40);

    Child<QAbstractButton>(w.get(), "cmdPlayRendered")->click();
    MediaPlayer* video = w->media().videoPlayer();
    EXPECT_EQ(video->URL(), w->paths().gstrFinalMixAVIFileSpec);
    EXPECT_EQ(video->volume(), 90);
    EXPECT_TRUE(w->keepAwake().tmrMoveMouseToPreventScreenSaver().isActive());
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Video);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return video->playState() == static_cast<int>(PlayState::Playing); }, 10000));
}

// A picture's held frames are empty chunks in the result; the studio's player must still show
// each picture for its whole time and play to the end of the voice.
TEST(RenderResult, HeldPicturesPlayForTheirWholeTime) {
    REQUIRE_AUDIO();
    test::TestAppFolder app;
    const AppPaths paths = AppPaths::forFolder(app.path());
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(app.file("red.jpg")));
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(app.file("blue.jpg")));
    const QString voice = app.file("voice.wav");
    ASSERT_TRUE(
        test::MakeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=3", "-ac", "1", voice}));
    StudioSettings studio;
    ToolPool pool;
    RenderJob job(
        StudioRenderRequest(paths, studio,
                            {test::Event(MediaKind::Pictures, 0, app.file("red.jpg")),
                             test::Event(MediaKind::Pictures, 1500, app.file("blue.jpg"))},
                            voice, 3000, {})
            .inputs,
        pool);
    const RenderReport report = job.runToEnd();
    ASSERT_TRUE(report.ok()) << report.message.toStdString();

    MediaPlayer player;
    QVideoSink sink;
    player.setVideoOutput(&sink);
    QList<std::pair<double, QString>> shown; // play position, colour of the frame
    QObject::connect(&sink, &QVideoSink::videoFrameChanged, &sink, [&](const QVideoFrame& f) {
        const QImage image = f.toImage();
        if (!image.isNull())
            shown.append({player.currentPosition(),
                          colourName(image.pixelColor(image.width() / 2, image.height() / 2))});
    });
    QElapsedTimer clock;
    player.setURL(report.output);
    clock.start();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            return player.playState() == static_cast<int>(PlayState::MediaEnded) ||
                   player.playState() == static_cast<int>(PlayState::Stopped);
        },
        15000));
    EXPECT_GT(clock.elapsed(), 2500) << "the player ran through the held frames";
    EXPECT_NEAR(player.durationMs(), 3000, 100);
    auto seen = [&](const QString& colour, double from, double to) {
        return std::any_of(shown.begin(), shown.end(), [&](const auto& s) {
            return s.second == colour && s.first >= from && s.first <= to;
        });
    };
    EXPECT_TRUE(seen("red", 0, 1.4));
    EXPECT_TRUE(seen("blue", 1.6, 3.0));
    EXPECT_FALSE(seen("blue", 0, 1.3));
    EXPECT_FALSE(seen("red", 1.7, 3.0));
}
