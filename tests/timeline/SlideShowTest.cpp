#include "timeline/SlideShow.h"
#include "FakeMediaDisplay.h"
#include "platform/WaitTimer.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/PictureList.h"
#include "timeline/RecordingState.h"
#include "timeline/SlideShowPicker.h"
#include "timeline/TimelineClock.h"

#include <QElapsedTimer>
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
    ASSERT_EQ(SlideShowWaits().size(), 21);
    EXPECT_EQ(SlideShowWaits().first(), ".6");
    EXPECT_EQ(SlideShowWaits().last(), "200");
    EXPECT_EQ(DefaultSlideShowWait(), "2");
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
    RecordingState state;
    EventGridModel grid;
    FixedClock clock;
    EventLogger logger{state, grid, clock};
    cq::test::FakeMediaDisplay display;
    ListOf3 list;
    WaitTimer wait;
    SlideShow show{list, display, logger, wait};
};
} // namespace

TEST(SlideShow, RunsWithItsWaitsLogsWhileRecordingAndStopReleasesTheWait) {
    ShowBench b;
    b.state.gblnRecording = true;
    b.show.setWaitText(".1");
    QElapsedTimer clock;
    clock.start();
    qint64 stoppedAt = -1;
    QTimer::singleShot(450, [&] {
        b.show.setWaitText("200"); // read before the next wait: a long one
    });
    QTimer::singleShot(700, [&] {
        stoppedAt = clock.elapsed();
        b.show.cmdSlideShow_Click(); // the second click stops
    });
    b.show.cmdSlideShow_Click(); // returns when the show has ended
    const qint64 ended = clock.elapsed();
    EXPECT_FALSE(b.show.isRunning());
    EXPECT_LT(ended - stoppedAt, 100); // the 200 s wait was let go at once
    // 1 (b.png), 2 (clip.mp4: no picture, the previous stays), 0 (a.jpg), 1 ...
    const QStringList pictures = b.display.calls;
    ASSERT_GE(pictures.size(), 2);
    EXPECT_EQ(pictures[0], "picture /pics/b.png");
    EXPECT_EQ(pictures[1], "picture /pics/a.jpg");
    EXPECT_EQ(b.grid.rowCount(), pictures.size());
    EXPECT_EQ(b.grid.rows().first().rowText(), "1\tPictures\t4.000\t\t/pics/b.png");
}

TEST(SlideShow, NotRecordingLogsNothingAndABadWaitEndsTheShow) {
    ShowBench b;
    b.show.setWaitText("later");
    b.show.cmdSlideShow_Click();
    EXPECT_FALSE(b.show.isRunning());
    EXPECT_EQ(b.display.calls, QStringList({"picture /pics/b.png"}));
    EXPECT_EQ(b.grid.rowCount(), 0);
    b.list.names.clear();
    b.display.calls.clear();
    b.show.cmdSlideShow_Click(); // an empty list shows nothing
    EXPECT_TRUE(b.display.calls.isEmpty());
}
