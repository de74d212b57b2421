#include "library/playback/VolumeSliderMath.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(VolumeSliderMath, KnobStaysOnTheTrackAndStepsAtMostTwentyUnits) {
    const int travel = SliderTravel(215, 10);
    EXPECT_EQ(travel, 200);
    EXPECT_EQ(SliderTravel(12, 10), 0);
    EXPECT_EQ(MoveKnob(100, 7, travel), 107);
    EXPECT_EQ(MoveKnob(100, 90, travel), 120);
    EXPECT_EQ(MoveKnob(100, -90, travel), 80);
    EXPECT_EQ(MoveKnob(190, 15, travel), 200);
    EXPECT_EQ(MoveKnob(5, -15, travel), 0);
}

TEST(VolumeSliderMath, DragRecordsTheFirstMoveThenFollowsTheMouse) {
    KnobDrag drag;
    EXPECT_EQ(drag.move(500, 40, 200), 40) << "no drag without a press";
    drag.press();
    EXPECT_EQ(drag.move(500, 40, 200), 40);
    EXPECT_EQ(drag.move(510, 40, 200), 50);
    EXPECT_EQ(drag.move(700, 50, 200), 70);
    EXPECT_EQ(drag.move(690, 70, 200), 60);
    drag.release();
    EXPECT_EQ(drag.move(900, 60, 200), 60);
}

TEST(VolumeSliderMath, LevelsAndTheMasterValue) {
    EXPECT_EQ(SliderLevel(0, 200), 0);
    EXPECT_EQ(SliderLevel(199, 200), 99);
    EXPECT_EQ(SliderLevel(200, 200), 100);
    EXPECT_EQ(SliderLevel(10, 0), 0);
    for (int level : {0, 1, 33, 50, 99, 100})
        EXPECT_EQ(SliderLevel(KnobLeftForLevel(level, 137), 137), level) << level;

    EXPECT_EQ(MasterVolumeValue(20, 200), 6533);
    EXPECT_EQ(MasterVolumeValue(200, 200), 65336);
}

TEST(VolumeSliderMath, MasterScaleMapsLinearlyOntoPactlPercent) {
    EXPECT_EQ(MasterVolumePercent(0), 0);
    EXPECT_EQ(MasterVolumePercent(6533), 10);
    EXPECT_EQ(MasterVolumePercent(65336), 100);
    EXPECT_EQ(MasterVolumePercent(70000), 100);
    EXPECT_EQ(MasterVolumeArguments(32668),
              QStringList({"set-sink-volume", "@DEFAULT_SINK@", "50%"}));
    EXPECT_EQ(MasterVolumePercent(MasterValueFromPercent(37)), 37);
    EXPECT_EQ(ParseSinkVolumePercent(
                  "Volume: front-left: 42598 /  65% / -11.23 dB,   front-right: 42598 /  65% / "
                  "-11.23 dB\n        balance 0.00\n"),
              65);
    EXPECT_EQ(ParseSinkVolumePercent("Connection failure: Connection refused"), -1);
}
