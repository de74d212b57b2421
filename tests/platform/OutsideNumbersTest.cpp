// Numbers read from files and tool output that no clip could have: they are refused, not wrapped
// around into times that look real.
#include "platform/TimeCode.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(OutsideNumbers, SecondsBeyondAQint64OfMillisecondsAreNoTime) {
    // The largest whole seconds whose milliseconds still fit.
    EXPECT_EQ(SecondsTextToMs(u"9223372036854774.5"), 9223372036854774500);
    EXPECT_EQ(SecondsTextToMs(u"9223372036854775"), -1);
    EXPECT_EQ(SecondsTextToMs(u"055555555555555555555555555555555555555555555555555555555555"), -1);
    EXPECT_EQ(SecondsTextToMs(u"99999999999999999999.000"), -1);
    EXPECT_EQ(SecondsTextToMs(u"0000000000000000000000000000012.250"), 12250);
}
