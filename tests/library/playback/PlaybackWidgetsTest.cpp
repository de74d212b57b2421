#include "ToneWav.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/PlayerControls.h"
#include "library/playback/widgets/PlayerTransport.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "library/playback/widgets/VolumeSlider.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QVideoFrame>
#include <QVideoSink>

#include <gtest/gtest.h>

using namespace cq;

namespace {
void SendMouse(QWidget* target, QEvent::Type type, int globalX) {
    const QPointF global(globalX, 10);
    const QPointF local = target->mapFromGlobal(global);
    QMouseEvent event(type, local, global, Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}
} // namespace

TEST(VolumeSlider, DraggingTheKnobMovesInLimitedStepsAndUpdatesTipAndAccessibility) {
    VolumeSlider slider(3);
    slider.resize(215, 22); // travel 200
    slider.setLevel(0);
    QSignalSpy levels(&slider, &VolumeSlider::levelChanged);
    VolumeSliderKnob* knob = slider.knob();
    EXPECT_EQ(knob->objectName(), "picSliderLevel_3");

    SendMouse(knob, QEvent::MouseButtonPress, 300);
    SendMouse(knob, QEvent::MouseMove, 300);
    SendMouse(knob, QEvent::MouseMove, 400); // fast: 20 units only
    SendMouse(knob, QEvent::MouseMove, 410);
    SendMouse(knob, QEvent::MouseButtonRelease, 410);
    SendMouse(knob, QEvent::MouseMove, 500); // released: nothing moves
    EXPECT_EQ(slider.knobLeft(), 30);
    EXPECT_EQ(slider.level(), 15);
    EXPECT_EQ(knob->toolTip(), "Volume: 15");
    ASSERT_FALSE(levels.isEmpty());
    EXPECT_EQ(levels.last().at(1).toInt(), 15);

    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->role(), QAccessible::Slider);
    ASSERT_NE(access->valueInterface(), nullptr);
    EXPECT_EQ(access->valueInterface()->currentValue().toInt(), 15);
    access->valueInterface()->setCurrentValue(80);
    EXPECT_EQ(slider.level(), 80);
    EXPECT_EQ(levels.last().at(1).toInt(), 80);

    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(slider.level(), 100);
    EXPECT_EQ(slider.masterValue(), kMasterVolumeMax);
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(slider.level(), 0);
}

TEST(PlayerControls, SliderDrivesThePlayerAndMuteIsTheBoldButton) {
    MediaPlayer player;
    PlayerControls controls(MediaTabId::Audio, &player);
    controls.resize(300, 30);
    auto* mute = controls.findChild<QPushButton*>("cmdMute_1");
    ASSERT_NE(mute, nullptr);
    EXPECT_EQ(mute->text(), "Mute");
    controls.slider()->moveKnobTo(controls.slider()->travel() / 2);
    EXPECT_EQ(player.volume(), controls.slider()->level());
    EXPECT_NEAR(player.volume(), 50, 1);

    mute->click();
    EXPECT_TRUE(mute->font().bold());
    EXPECT_TRUE(player.mute());
    mute->click();
    EXPECT_FALSE(mute->font().bold());
    EXPECT_FALSE(player.mute());

    PlayerControls undriven(MediaTabId::StandardEffects, &player);
    undriven.resize(300, 30);
    undriven.slider()->moveKnobTo(0);
    EXPECT_NEAR(player.volume(), 50, 1) << "the Standard Effects slider drives nothing";
}

TEST(PlayerControls, TextTabMuteAndStopSilenceTheVoice) {
    PlayerControls controls(MediaTabId::TextAndSpeech, nullptr);
    QSignalSpy silence(&controls, &PlayerControls::stopSpeechRequested);
    auto* mute = controls.findChild<QPushButton*>("cmdMute_4");
    mute->click();
    EXPECT_TRUE(mute->font().bold());
    EXPECT_EQ(silence.size(), 1);
    mute->click(); // unmuting only clears the bold state
    EXPECT_FALSE(mute->font().bold());
    EXPECT_EQ(silence.size(), 1);
    controls.findChild<QPushButton*>("cmdStop_4")->click();
    EXPECT_EQ(silence.size(), 2);
}

TEST(VideoPlayerWidget, ClickLeavesFullScreenAndIsReported) {
    VideoPlayerWidget video;
    EXPECT_EQ(video.objectName(), "WindowsMediaPlayer1");
    QSignalSpy clicks(video.player(), &MediaPlayer::click);
    video.player()->setFullScreen(true);
    EXPECT_TRUE(video.isFullScreen());
    QTest::mouseClick(&video, Qt::LeftButton);
    EXPECT_EQ(clicks.size(), 1);
    EXPECT_FALSE(video.player()->fullScreen());
    EXPECT_FALSE(video.isFullScreen());
}

TEST(VideoPlayerWidget, PlaysAVideoIntoItsFrames) {
    if (qEnvironmentVariableIsEmpty("CLIPQUILL_TEST_AUDIO"))
        GTEST_SKIP() << "no test sound server";
    QTemporaryDir dir;
    const QString clip = dir.filePath("clip $(x) 'q'.avi");
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg",
                 {"-hide_banner", "-loglevel", "error", "-f", "lavfi", "-i",
                  "testsrc=size=320x240:rate=25:duration=2", "-f", "lavfi", "-i",
                  "sine=frequency=440:duration=2", "-c:v", "mpeg4", "-c:a", "pcm_s16le", clip});
    ASSERT_TRUE(ffmpeg.waitForFinished(30000));
    ASSERT_EQ(ffmpeg.exitCode(), 0) << ffmpeg.readAllStandardError().toStdString();

    VideoPlayerWidget video;
    video.resize(320, 240);
    video.show();
    QSize frameSize;
    QObject::connect(video.videoSink(), &QVideoSink::videoFrameChanged, &video,
                     [&frameSize](const QVideoFrame& frame) {
                         if (frame.isValid())
                             frameSize = frame.size();
                     });
    video.player()->setURL(clip);
    ASSERT_TRUE(QTest::qWaitFor([&] { return frameSize.isValid(); }, 10000))
        << video.player()->errorString().toStdString();
    EXPECT_EQ(frameSize, QSize(320, 240));
    EXPECT_EQ(video.player()->playState(), static_cast<int>(PlayState::Playing));
    EXPECT_NEAR(video.player()->durationMs(), 2000, 100);
}

TEST(PlayerTransport, MovingTheBarIsTheUsersPositionChange) {
    if (qEnvironmentVariableIsEmpty("CLIPQUILL_TEST_AUDIO"))
        GTEST_SKIP() << "no test sound server";
    QTemporaryDir dir;
    MediaPlayer player;
    PlayerTransport transport(&player);
    auto* playPause = transport.findChild<QPushButton*>("cmdPlayPause");
    ASSERT_NE(playPause, nullptr);
    QSignalSpy moved(&player, &MediaPlayer::positionChange);
    player.setURL(test::WriteToneWav(dir.path(), 3.0));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return player.playState() == int(PlayState::Playing) && player.durationMs() > 2900; },
        10000));
    EXPECT_EQ(playPause->text(), "Pause");
    playPause->click();
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return player.playState() == int(PlayState::Paused); }, 5000));
    EXPECT_EQ(playPause->text(), "Play");
    EXPECT_TRUE(moved.isEmpty()) << "playing on is no position change";

    QSlider* bar = transport.positionBar();
    const int before = bar->value();
    QTest::keyClick(bar, Qt::Key_PageUp);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !moved.isEmpty(); }, 2000));
    EXPECT_NEAR(moved.at(0).at(1).toDouble(), (before + 1000) / 1000.0, 0.05);
    EXPECT_EQ(PlayerTransport::timeText(65900), "1:05");
}
