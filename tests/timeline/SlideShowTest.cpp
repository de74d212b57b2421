#include "timeline/SlideShow.h"
#include "FakeMediaDisplay.h"
#include "support/TestRows.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/PictureList.h"
#include "timeline/SlideShowPicker.h"
#include "timeline/TimelineClock.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace cq;

namespace {
QList<int> take(SlideShowPicker& picker, int n, int listCount, bool random = false,
                SlideShowPicker::RandomBetween rnd = {}) {
    QList<int> shown;
    for (int i = 0; i < n; ++i)
        shown << picker.next(listCount, random, rnd).value_or(-1);
    return shown;
}
} // namespace

TEST(SlideShowPicker, OrderedWholeListBeginsWithTheSecondEntry) {
    SlideShowPicker p;
    p.start({0, 2}); // three or fewer selected: the whole list
    EXPECT_FALSE(p.selectionMode());
    EXPECT_EQ(take(p, 7, 3), QList<int>({1, 2, 0, 1, 2, 0, 1}));
    p.start({});
    EXPECT_EQ(take(p, 2, 1), QList<int>({0, 0}));
    EXPECT_FALSE(p.next(0, false, {}).has_value());
}

TEST(SlideShowPicker, MoreThanThreeSelectedShowOnlyTheSelectionNeverPastItsEnd) {
    SlideShowPicker p;
    p.start({7, 2, 5, 9});
    EXPECT_TRUE(p.selectionMode());
    EXPECT_EQ(take(p, 9, 12), QList<int>({2, 5, 7, 9, 2, 5, 7, 9, 2}));
    // Random picks are whole numbers 1..count of the selection.
    QList<QPair<int, int>> asked;
    auto rnd = [&](int low, int high) {
        asked << qMakePair(low, high);
        return high;
    };
    p.start({1, 3, 4, 6});
    EXPECT_EQ(take(p, 2, 12, true, rnd), QList<int>({6, 6}));
    EXPECT_EQ(asked.first(), qMakePair(1, 4));
    // A generator out of range is held to the selection.
    EXPECT_EQ(take(p, 1, 12, true, [](int, int) { return 99; }), QList<int>({6}));
    SlideShowPicker whole;
    whole.start({});
    EXPECT_EQ(take(whole, 1, 5, true, rnd), QList<int>({4}));
    EXPECT_EQ(asked.last(), qMakePair(0, 4));
}

TEST(SlideShowPicker, WaitTexts) {
    EXPECT_EQ(SlideShowWaitMs(".6"), 600);
    EXPECT_EQ(SlideShowWaitMs("1.5"), 1500);
    EXPECT_EQ(SlideShowWaitMs(" 200 "), 200000);
    EXPECT_FALSE(SlideShowWaitMs("soon").has_value());
    EXPECT_FALSE(SlideShowWaitMs("-2").has_value());
    EXPECT_FALSE(SlideShowWaitMs("").has_value());
    EXPECT_EQ(SlideShowWaitMs("0.001"), 100); // never a loop without a wait
}

namespace {
struct ListOf3 : PictureList {
    QStringList names{"a.jpg", "b.png", "clip.mp4"};
    QList<int> selected;
    QString folder() const override { return "/pics"; }
    QStringList entries() const override { return names; }
    QList<int> selectedRows() const override { return selected; }
};
struct FixedClock : TimelineClock {
    qint64 elapsedMs() override { return 4000; }
};
struct ShowBench {
    ShowBench() {
        QObject::connect(&show, &SlideShow::pictureShown,
                         [this] { shownAtNs << clock.nsecsElapsed(); });
        clock.start();
    }
    EventGridModel grid;
    FixedClock fixedClock;
    EventLogger logger{grid, fixedClock};
    cq::test::FakeMediaDisplay display;
    ListOf3 list;
    SlideShow show{list, display, logger};
    QElapsedTimer clock;
    QList<qint64> shownAtNs;
};
} // namespace

TEST(SlideShow, ClickReturnsAtOnceAndEveryPictureStaysItsWholeWait) {
    ShowBench b;
    b.logger.setRecording(true);
    b.show.setWaitText(".3");
    b.show.cmdSlideShow_Click();
    // The click has returned with the show running and its first picture up.
    EXPECT_TRUE(b.show.isRunning());
    EXPECT_EQ(b.display.calls, QStringList{"picture /pics/b.png"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return b.shownAtNs.size() >= 3; }, 10000));
    b.show.cmdSlideShow_Click();
    // 1 (b.png), 2 (clip.mp4: no picture, b.png stays for two waits), 0 (a.jpg), 1 ...
    EXPECT_EQ(b.display.calls.mid(0, 3),
              QStringList({"picture /pics/b.png", "picture /pics/a.jpg", "picture /pics/b.png"}));
    // Never shorter than asked (a coarse timer fires up to 5 % early); 1 ms for the clock.
    constexpr qint64 kMs = 1000 * 1000;
    EXPECT_GE(b.shownAtNs[1] - b.shownAtNs[0], 600 * kMs - kMs);
    EXPECT_GE(b.shownAtNs[2] - b.shownAtNs[1], 300 * kMs - kMs);
    EXPECT_EQ(b.grid.rowCount(), b.display.calls.size());
    EXPECT_EQ(b.grid.rows().first(), test::Event(MediaKind::Pictures, 4000, "/pics/b.png"));
}

TEST(SlideShow, StopEndsTheShowBeforeItsNextPictureAndAStartBeginsAgain) {
    ShowBench b;
    QSignalSpy running(&b.show, &SlideShow::runningChanged);
    b.show.setWaitText("200");
    b.show.cmdSlideShow_Click();
    b.show.cmdSlideShow_Click(); // the second click stops, though 200 s are pending
    EXPECT_FALSE(b.show.isRunning());
    ASSERT_EQ(running.size(), 2);
    EXPECT_FALSE(running.at(1).at(0).toBool());

    b.show.setWaitText(".1");
    b.show.cmdSlideShow_Click();
    b.show.stop(); // Stop of the recorder
    const qsizetype shown = b.display.calls.size();
    // A precise timer of the same wait, started later, fires after the show's next step would
    // have come.
    QTimer later;
    later.setSingleShot(true);
    later.setTimerType(Qt::PreciseTimer);
    QSignalSpy passed(&later, &QTimer::timeout);
    later.start(150);
    ASSERT_TRUE(passed.wait(10000));
    EXPECT_EQ(b.display.calls.size(), shown); // no step of a stopped show comes late
    EXPECT_EQ(b.grid.rowCount(), 0);          // nothing is logged without a recording
}

TEST(SlideShow, ABadWaitOrAnEmptyListEndsTheShow) {
    ShowBench b;
    b.show.setWaitText("later");
    b.show.cmdSlideShow_Click();
    EXPECT_FALSE(b.show.isRunning());
    EXPECT_EQ(b.display.calls, QStringList({"picture /pics/b.png"}));
    b.list.names.clear();
    b.display.calls.clear();
    b.show.setWaitText("1");
    b.show.cmdSlideShow_Click();
    EXPECT_FALSE(b.show.isRunning());
    EXPECT_TRUE(b.display.calls.isEmpty());
}
