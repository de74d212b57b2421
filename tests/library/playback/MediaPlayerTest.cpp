#include "library/playback/MediaPlayer.h"
#include "ToneWav.h"
#include "library/playback/MasterVolume.h"
#include "library/playback/VolumeSliderMath.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

#include <gtest/gtest.h>

using namespace cq;

namespace {

bool HaveTestAudio() {
    return !qEnvironmentVariableIsEmpty("CLIPQUILL_TEST_AUDIO");
}

} // namespace

TEST(MediaPlayer, QtStatesMapToTheNumericPlayStates) {
    using P = QMediaPlayer;
    EXPECT_EQ(MapPlayState(P::StoppedState, P::NoMedia, false), PlayState::Undefined);
    EXPECT_EQ(MapPlayState(P::StoppedState, P::LoadingMedia, false), PlayState::Transitioning);
    EXPECT_EQ(MapPlayState(P::StoppedState, P::LoadedMedia, false), PlayState::Ready);
    EXPECT_EQ(MapPlayState(P::StoppedState, P::LoadedMedia, true), PlayState::Stopped);
    EXPECT_EQ(MapPlayState(P::PlayingState, P::BufferingMedia, true), PlayState::Buffering);
    EXPECT_EQ(MapPlayState(P::PlayingState, P::StalledMedia, true), PlayState::Buffering);
    EXPECT_EQ(MapPlayState(P::PlayingState, P::BufferedMedia, true), PlayState::Playing);
    EXPECT_EQ(MapPlayState(P::PausedState, P::BufferedMedia, true), PlayState::Paused);
    EXPECT_EQ(MapPlayState(P::StoppedState, P::EndOfMedia, true), PlayState::MediaEnded);
    EXPECT_EQ(MapPlayState(P::StoppedState, P::InvalidMedia, true), PlayState::Undefined);
}

TEST(MediaPlayer, WithoutMediaVolumeAndMuteAreKept) {
    MediaPlayer player;
    EXPECT_EQ(player.playState(), 0);
    player.setVolume(140);
    EXPECT_EQ(player.volume(), 100);
    player.setVolume(35);
    EXPECT_EQ(player.volume(), 35);
    player.setMute(true);
    EXPECT_TRUE(player.mute());
    player.stop();
    player.play();
    EXPECT_EQ(player.playState(), 0);
    QSignalSpy full(&player, &MediaPlayer::fullScreenChanged);
    player.setFullScreen(true);
    player.setFullScreen(true);
    EXPECT_EQ(full.size(), 1);
}

TEST(MediaPlayer, ShortWavPlaysToItsEndThenRestsStopped) {
    if (!HaveTestAudio())
        GTEST_SKIP() << "no test sound server";
    QTemporaryDir dir;
    const QString wav = test::WriteToneWav(dir.path(), 0.5);
    MediaPlayer player;
    QList<int> states;
    QObject::connect(&player, &MediaPlayer::playStateChange, &player,
                     [&states](int state) { states.append(state); });
    player.setURL(wav);
    EXPECT_EQ(player.URL(), wav);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return states.contains(8) && player.playState() == 1; }, 10000))
        << player.errorString().toStdString() << " states: " << [&] {
               QStringList seen;
               for (int s : states)
                   seen << QString::number(s);
               return seen.join(u',').toStdString();
           }();
    EXPECT_TRUE(states.contains(3));
    EXPECT_LT(states.indexOf(3), states.indexOf(8));
    EXPECT_EQ(states.last(), 1);
    EXPECT_NEAR(player.durationMs(), 500, 50);

    QSignalSpy moved(&player, &MediaPlayer::positionChange);
    player.setCurrentPosition(0.25);
    ASSERT_EQ(moved.size(), 1);
    player.close();
    EXPECT_EQ(player.playState(), 0);
    EXPECT_TRUE(player.URL().isEmpty());
}

TEST(MasterVolume, SetsAndReadsTheDefaultSink) {
    if (!HaveTestAudio())
        GTEST_SKIP() << "no test sound server";
    MasterVolume master;
    ASSERT_TRUE(master.available());
    QSignalSpy set(&master, &MasterVolume::valueSet);
    master.setValue(MasterVolumeValue(20, 200));
    master.setValue(MasterVolumeValue(60, 200)); // only the newest waiting value follows
    master.setValue(MasterVolumeValue(50, 200));
    ASSERT_TRUE(QTest::qWaitFor([&] { return set.size() == 2 && !master.busy(); }, 10000));
    EXPECT_TRUE(set.at(1).at(1).toBool());

    QProcess pactl;
    pactl.start("pactl", {"get-sink-volume", "@DEFAULT_SINK@"});
    ASSERT_TRUE(pactl.waitForFinished(5000));
    EXPECT_EQ(ParseSinkVolumePercent(QString::fromUtf8(pactl.readAllStandardOutput())), 25);

    QSignalSpy read(&master, &MasterVolume::valueRead);
    master.readValue();
    ASSERT_TRUE(read.wait(5000));
    EXPECT_EQ(MasterVolumePercent(read.at(0).at(0).toInt()), 25);
}
