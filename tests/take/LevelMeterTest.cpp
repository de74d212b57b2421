#include "take/LevelMeter.h"
#include "ToneSamples.h"

#include <gtest/gtest.h>

using namespace cq;
using cq::test::Silence;
using cq::test::Tone;

TEST(LevelMeter, ReadsAToneSilenceAndFullScaleInDbfs) {
    LevelMeter meter;
    EXPECT_EQ(meter.level().rmsDb, kLevelFloorDb);
    // A sine's RMS lies 3 dB under its peak.
    meter.addSamples(Tone(-18.0, 500));
    EXPECT_NEAR(meter.level().rmsDb, -21.0, 0.2);
    EXPECT_NEAR(meter.level().peakDb, -18.0, 0.1);
    EXPECT_NEAR(meter.level().heldPeakDb, -18.0, 0.1);
    EXPECT_EQ(meter.windowsMeasured(), 10);

    // Pieces that split samples read the same as whole blocks.
    LevelMeter pieces;
    const QByteArray tone = Tone(-18.0, 500);
    for (qsizetype at = 0; at < tone.size(); at += 333)
        pieces.addSamples(tone.mid(at, 333));
    EXPECT_NEAR(pieces.level().rmsDb, meter.level().rmsDb, 1e-9);
    EXPECT_NEAR(pieces.level().peakDb, meter.level().peakDb, 1e-9);

    // Digital silence and a tone under the floor both read as the floor.
    meter.addSamples(Silence(100));
    EXPECT_EQ(meter.level().rmsDb, kLevelFloorDb);
    EXPECT_EQ(meter.level().peakDb, kLevelFloorDb);
    meter.addSamples(Tone(-75.0, 100));
    EXPECT_EQ(meter.level().peakDb, kLevelFloorDb);

    meter.addSamples(Tone(3.0, 100)); // clipped to full scale
    EXPECT_EQ(meter.level().peakDb, 0.0);
    EXPECT_GT(meter.level().rmsDb, -2.0);
    meter.reset();
    EXPECT_EQ(meter.level().heldPeakDb, kLevelFloorDb);
    EXPECT_EQ(meter.warning(), LevelWarning::None);
}

TEST(LevelMeter, ThePeakIsHeldForAboutASecond) {
    LevelMeter meter;
    meter.addSamples(Tone(-6.0, 100));
    meter.addSamples(Tone(-30.0, 600));
    EXPECT_NEAR(meter.level().peakDb, -30.0, 0.1);
    EXPECT_NEAR(meter.level().heldPeakDb, -6.0, 0.1);
    meter.addSamples(Tone(-30.0, 600));
    EXPECT_NEAR(meter.level().heldPeakDb, -30.0, 0.1);
    // A louder peak takes over at once.
    meter.addSamples(Tone(-10.0, 50));
    EXPECT_NEAR(meter.level().heldPeakDb, -10.0, 0.1);
}

TEST(LevelMeter, WarnsOfSilenceWhileRecordingAndOfClipping) {
    LevelMeter meter;
    meter.addSamples(Silence(3000));
    EXPECT_EQ(meter.warning(), LevelWarning::None) << "silence only matters while recording";

    meter.setWatchingSilence(true);
    meter.addSamples(Silence(1900));
    EXPECT_EQ(meter.warning(), LevelWarning::None);
    meter.addSamples(Silence(150));
    EXPECT_EQ(meter.warning(), LevelWarning::NoSound);
    meter.addSamples(Tone(-50.0, 50)); // sound came back
    EXPECT_EQ(meter.warning(), LevelWarning::None);
    // Hiss under the floor counts as silence too; a single louder window breaks it.
    meter.addSamples(Tone(-70.0, 1500));
    meter.addSamples(Tone(-40.0, 50));
    meter.addSamples(Tone(-70.0, 1500));
    EXPECT_EQ(meter.warning(), LevelWarning::None);
    meter.addSamples(Tone(-70.0, 600));
    EXPECT_EQ(meter.warning(), LevelWarning::NoSound);
    meter.setWatchingSilence(false);
    EXPECT_EQ(meter.warning(), LevelWarning::None);

    meter.addSamples(Tone(-1.0, 500));
    EXPECT_EQ(meter.warning(), LevelWarning::None) << "loud but not clipped";
    meter.addSamples(Tone(6.0, 50));
    EXPECT_EQ(meter.warning(), LevelWarning::TooLoud);
    meter.addSamples(Tone(-20.0, 1400));
    EXPECT_EQ(meter.warning(), LevelWarning::TooLoud);
    meter.addSamples(Tone(-20.0, 200));
    EXPECT_EQ(meter.warning(), LevelWarning::None);
}
