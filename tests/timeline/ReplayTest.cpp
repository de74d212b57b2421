#include "timeline/Replay.h"
#include "FakeMediaDisplay.h"
#include "support/TestRows.h"
#include "timeline/EventGridModel.h"
#include "timeline/ReplaySchedule.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

using namespace cq;
using cq::test::FakeMediaDisplay;
using cq::test::FakeVoicePlayer;

TEST(ReplaySchedule, RowsComeInOrderOnceTheVoiceReachesThem) {
    const QList<qint64> times{2000, 7000, 12000};
    ReplayStep s = NextReplayStep(times, 0, 1999, false, false);
    EXPECT_TRUE(s.rowsToShow.isEmpty());
    EXPECT_EQ(s.nextRow, 0);
    s = NextReplayStep(times, 0, 2000, false, false);
    EXPECT_EQ(s.rowsToShow, QList<int>({0}));
    // A late look shows every row it passed, in order.
    s = NextReplayStep(times, 1, 12500, false, false);
    EXPECT_EQ(s.rowsToShow, QList<int>({1, 2}));
    EXPECT_TRUE(s.finished);
    // A row out of time order is still shown after the one before it.
    s = NextReplayStep({5000, 1000}, 0, 3000, false, false);
    EXPECT_TRUE(s.rowsToShow.isEmpty());
}

TEST(ReplaySchedule, StopAndTheEndOfTheVoiceSkipWhatIsLeft) {
    const QList<qint64> times{2000, 7000, 900000};
    ReplayStep s = NextReplayStep(times, 1, 3000, false, true);
    EXPECT_TRUE(s.rowsToShow.isEmpty());
    EXPECT_TRUE(s.finished);
    s = NextReplayStep(times, 1, 8000, true, false);
    EXPECT_EQ(s.rowsToShow, QList<int>({1})); // due before the end: still shown
    EXPECT_TRUE(s.finished);
    EXPECT_TRUE(NextReplayStep({}, 0, 0, false, false).finished);
}

namespace {
struct ReplayBench {
    EventGridModel grid;
    FakeMediaDisplay display;
    FakeVoicePlayer voice;
    Replay replay{grid, display, voice};
};
} // namespace

TEST(Replay, EachRowIsShownWhenTheVoicePassesItsTime) {
    ReplayBench b;
    b.grid.appendRow(test::Event(MediaKind::Video, 2000, "/v.mp4", 12500));
    b.grid.appendRow(test::Event(MediaKind::Pictures, 7000, "/p.jpg"));
    b.grid.appendRow(test::Event(MediaKind::Both, 12000, "/w/Hi.jpg", std::nullopt, "Hi"));
    b.grid.appendRow(test::Event(MediaKind::Video, 13000, "/w.mp4"));
    ASSERT_TRUE(b.replay.start("/work/RecordedAudio.wav"));
    EXPECT_EQ(b.voice.file, "/work/RecordedAudio.wav");
    EXPECT_TRUE(b.display.muted);
    EXPECT_EQ(b.display.calls, QStringList({"clear"}));
    EXPECT_FALSE(b.replay.start("/again.wav"));

    const auto at = [&](qint64 ms) {
        b.voice.position = ms;
        b.replay.tick();
        return b.display.calls.last();
    };
    EXPECT_EQ(at(1990), "clear");
    EXPECT_EQ(at(2010), "video /v.mp4 @12500");
    EXPECT_EQ(at(6990), "video /v.mp4 @12500");
    EXPECT_EQ(at(7000), "picture /p.jpg");
    EXPECT_EQ(at(12001), "text Hi"); // shown like a Text row, not spoken
    EXPECT_EQ(at(13050), "video /w.mp4 @-1");
    EXPECT_TRUE(b.replay.isRunning()); // the voice plays on after the last row
    b.voice.ended = true;
    EXPECT_EQ(at(15000), "stop video"); // the video ends with the voice
    EXPECT_FALSE(b.replay.isRunning());
    EXPECT_FALSE(b.display.muted);
}

TEST(Replay, StopEndsItAndNoFurtherRowIsShown) {
    ReplayBench b;
    b.grid.appendRow(test::Event(MediaKind::Pictures, 1000, "/a.jpg"));
    b.grid.appendRow(test::Event(MediaKind::Pictures, 5000, "/b.jpg"));
    int finished = 0;
    QObject::connect(&b.replay, &Replay::finished, [&] { ++finished; });
    b.replay.start("/v.wav");
    b.voice.position = 1200;
    b.replay.tick();
    b.replay.stop();
    EXPECT_TRUE(b.voice.ended);
    b.voice.position = 6000;
    b.replay.tick();
    EXPECT_EQ(b.display.calls.filter("picture").size(), 1);
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(b.replay.isRunning());
}

TEST(Replay, TheTimerDrivesItWhileTheEventLoopStaysFree) {
    ReplayBench b;
    b.grid.appendRow(test::Event(MediaKind::Pictures, 0, "/a.jpg"));
    b.grid.appendRow(test::Event(MediaKind::Pictures, 100, "/b.jpg"));
    QElapsedTimer clock;
    clock.start();
    // The "voice" follows real time; other timers keep firing meanwhile.
    QTimer voiceClock;
    QObject::connect(&voiceClock, &QTimer::timeout, [&] {
        b.voice.position = clock.elapsed();
        if (clock.elapsed() > 300)
            b.voice.ended = true;
    });
    voiceClock.start(5);
    int otherTicks = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&] { ++otherTicks; });
    other.start(10);
    b.replay.start("/v.wav");
    while (b.replay.isRunning() && clock.elapsed() < 3000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    EXPECT_FALSE(b.replay.isRunning());
    EXPECT_EQ(b.display.calls.filter("picture").size(), 2);
    EXPECT_GT(otherTicks, 10);
}
