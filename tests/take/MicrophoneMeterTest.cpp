#include "take/widgets/MicrophoneMeter.h"
#include "ToneSamples.h"
#include "take/LevelMeter.h"
#include "take/widgets/LevelBar.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;
using cq::test::Silence;
using cq::test::Tone;

TEST(MicrophoneMeter, ShowsAndAnnouncesTheLevelAndItsWarnings) {
    LevelMeter meter;
    MicrophoneMeter widget(meter);
    widget.show();
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(widget.bar());
    ASSERT_TRUE(bar && bar->valueInterface());
    EXPECT_EQ(bar->valueInterface()->currentValue().toInt(), -60);

    // The meter is read on the widget's own timer.
    meter.addSamples(Tone(-18.0, 200));
    ASSERT_TRUE(QTest::qWaitFor([&] { return widget.bar()->value() != -60; }, 2000));
    EXPECT_EQ(bar->valueInterface()->currentValue().toInt(), -21);
    EXPECT_NEAR(widget.bar()->level().heldPeakDb, -18.0, 0.1);
    EXPECT_TRUE(widget.warningLabel()->isHidden());

    meter.addSamples(Tone(6.0, 50));
    ASSERT_TRUE(QTest::qWaitFor([&] { return widget.warningLabel()->isVisible(); }, 2000));
    EXPECT_EQ(widget.warningLabel()->text(), "Too loud");
    meter.addSamples(Tone(-18.0, 2000));
    meter.setWatchingSilence(true);
    meter.addSamples(Silence(2100));
    widget.refresh();
    EXPECT_EQ(widget.warningLabel()->text(), "No sound from the microphone");
    EXPECT_TRUE(widget.warningLabel()->isVisible());
    EXPECT_EQ(bar->valueInterface()->currentValue().toInt(), -60);
    meter.addSamples(Tone(-30.0, 100));
    ASSERT_TRUE(QTest::qWaitFor([&] { return widget.warningLabel()->isHidden(); }, 2000));
}
