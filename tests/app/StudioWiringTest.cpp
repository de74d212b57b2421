#include "app/widgets/MediaStation.h"
#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "library/playback/MediaPlayer.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "support/TestAudio.h"
#include "support/WidgetFinding.h"
#include "take/RecordingController.h"
#include "text/widgets/TextDisplaySurface.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"

#include <QFileInfo>
#include <QImage>
#include <QListWidget>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;
using test::Child;
using test::ClickItem;

// The recording flag alone opens the grid to rows; the capture itself is tested elsewhere.
TEST(StudioWiring, DisplaySwitchLogsThePictureAndRunsTheTextClick) {
    test::TestAppFolder app;
    QTemporaryDir media;
    QImage picture(80, 60, QImage::Format_RGB32);
    picture.fill(Qt::green);
    ASSERT_TRUE(picture.save(media.filePath("green field.jpg")));
    auto w = test::OpenStudio(app);
    ASSERT_TRUE(w->mediaBrowser().showFolder(MediaTabId::Pictures, media.path()));
    const EventGridModel& grid = w->timeline().grid();

    ClickItem(w->findChild<QListWidget*>("File1_2"), "green field.jpg");
    EXPECT_EQ(grid.rowCount(), 0) << "nothing is logged while no recording runs";
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return w->displayPlace().currentSurface() == DisplaySurface::Picture; }, 2000));

    w->timeline().logger().setRecording(true);
    Child<QAbstractButton>(w.get(), "cmdDisplayVideoOrPics_1")->click();
    ASSERT_EQ(grid.rowCount(), 1);
    EXPECT_EQ(grid.row(0).kind, MediaKind::Pictures);
    EXPECT_EQ(grid.row(0).file, media.filePath("green field.jpg"));

    // "Text" with no text chosen yet shows and logs nothing.
    Child<QAbstractButton>(w.get(), "cmdDisplayVideoOrPics_2")->click();
    EXPECT_EQ(grid.rowCount(), 1);
    w->studioSettings().gstrCurrentText = "See you soon";
    Child<QAbstractButton>(w.get(), "cmdDisplayVideoOrPics_2")->click();
    ASSERT_EQ(grid.rowCount(), 2);
    EXPECT_EQ(grid.row(1).kind, MediaKind::Text);
    EXPECT_EQ(grid.row(1).text, "See you soon");
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Text);
    EXPECT_FALSE(w->media().picDisplay()->picture().isNull());
    EXPECT_TRUE(QFile::exists(grid.row(1).file));
    // The switch never toggles back: a second press logs the text again.
    Child<QAbstractButton>(w.get(), "cmdDisplayVideoOrPics_2")->click();
    EXPECT_EQ(grid.rowCount(), 3);
    w->timeline().logger().setRecording(false);
}

namespace {
// A four-second test video with sound and a two-second beep.
void makeClipAndBeep(const QString& folder) {
    ASSERT_TRUE(test::MakeMedia({"-f", "lavfi", "-i", "testsrc=size=160x120:rate=25:duration=4",
                                 "-f", "lavfi", "-i", "sine=duration=4", "-c:v", "mpeg4", "-c:a",
                                 "pcm_s16le", folder + "/clip.avi"}));
    ASSERT_TRUE(test::MakeMedia({"-f", "lavfi", "-i", "sine=duration=2", folder + "/beep.wav"}));
}
} // namespace

TEST(StudioWiring, SoundsPlayUnloggedAndAMovedVideoIsANewEvent) {
    REQUIRE_AUDIO();
    test::TestAppFolder app;
    QTemporaryDir media;
    ASSERT_NO_FATAL_FAILURE(makeClipAndBeep(media.path()));
    auto w = test::OpenStudio(app);
    ASSERT_TRUE(w->mediaBrowser().showFolder(MediaTabId::Video, media.path()));
    ASSERT_TRUE(w->mediaBrowser().showFolder(MediaTabId::Audio, media.path()));
    const EventGridModel& grid = w->timeline().grid();
    w->timeline().logger().setRecording(true);

    ClickItem(w->findChild<QListWidget*>("File1_1"), "beep.wav");
    EXPECT_EQ(w->media().WMPAudio(MediaTabId::Audio)->URL(), media.filePath("beep.wav"));
    EXPECT_EQ(grid.rowCount(), 0) << "sounds are heard, never logged";

    ClickItem(w->findChild<QListWidget*>("File1_0"), "clip.avi");
    ASSERT_EQ(grid.rowCount(), 1);
    EXPECT_EQ(grid.row(0).kind, MediaKind::Video);
    MediaPlayer* video = w->media().videoPlayer();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return video->playState() == static_cast<int>(PlayState::Playing); }, 10000));
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Video);

    video->setCurrentPosition(2.5);
    ASSERT_EQ(grid.rowCount(), 2);
    EXPECT_EQ(grid.row(1).kind, MediaKind::Video);
    EXPECT_EQ(grid.row(1).startMs, 2500);

    Child<QAbstractButton>(w.get(), "cmdFullScreen")->click();
    EXPECT_TRUE(video->fullScreen());
    Child<QAbstractButton>(w.get(), "cmdFullScreen")->click();
    EXPECT_FALSE(video->fullScreen());
    video->pause();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return video->playState() == static_cast<int>(PlayState::Paused); }, 5000));
    Child<QAbstractButton>(w.get(), "cmdFullScreen")->click();
    EXPECT_FALSE(video->fullScreen()) << "full screen only while the video plays";
    w->timeline().logger().setRecording(false);
}

// A desktop whose sound server has speakers but no input at all. The sound system is set up
// once per process, so the studio runs in a child process that talks to a private server.
TEST(StudioWiring, WithoutAnySoundInputStartUpSaysNoMicrophoneWasFound) {
    if (qEnvironmentVariableIsSet("CQ_TEST_SPEAKERS_ONLY")) {
        test::TestAppFolder app;
        auto w = test::OpenStudio(app);
        QMessageBox* box = nullptr;
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return (box = w->findChild<QMessageBox*>()) && box->isVisible(); }, 10000));
        EXPECT_EQ(box->windowTitle(), "No microphone");
        EXPECT_TRUE(box->text().startsWith("No microphone was found")) << box->text().toStdString();
        EXPECT_FALSE(box->text().contains("You may still record sound"));
        box->close();
        Child<QAbstractButton>(w.get(), "cmdRecordVoiceEmail")->click();
        EXPECT_FALSE(w->timeline().controller().gblnRecording()) << "record refuses";
        return;
    }
    const QString pulseaudio = QStandardPaths::findExecutable("pulseaudio");
    if (pulseaudio.isEmpty())
        GTEST_SKIP() << "no PulseAudio to start a private server";
    QTemporaryDir runtime;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_RUNTIME_DIR", runtime.path());
    env.insert("HOME", runtime.path());
    env.remove("PULSE_SERVER");
    QProcess server;
    server.setProcessEnvironment(env);
    server.start(pulseaudio, {"--daemonize=no", "-n", "--exit-idle-time=-1",
                              "--load=module-native-protocol-unix",
                              "--load=module-null-sink sink_name=speakers"});
    ASSERT_TRUE(server.waitForStarted(10000));
    const QString socket = runtime.filePath("pulse/native");
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo::exists(socket); }, 20000))
        << server.readAllStandardError().toStdString();

    QProcess child;
    env.insert("CQ_TEST_SPEAKERS_ONLY", "1");
    env.insert("PULSE_SERVER", "unix:" + socket);
    child.setProcessEnvironment(env);
    child.start(
        QCoreApplication::applicationFilePath(),
        {"--gtest_filter=StudioWiring.WithoutAnySoundInputStartUpSaysNoMicrophoneWasFound"});
    const bool finished = child.waitForFinished(60000);
    server.terminate();
    server.waitForFinished(10000);
    ASSERT_TRUE(finished);
    const QByteArray out = child.readAllStandardOutput();
    EXPECT_EQ(child.exitCode(), 0) << out.data();
    EXPECT_TRUE(out.contains("[       OK ]")) << out.data();
}
