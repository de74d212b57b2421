// Numbers read from files and tool output that no clip could have: they are refused, not wrapped
// around into times that look real.
#include "platform/FfmpegOutput.h"
#include "platform/TimeCode.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(OutsideNumbers, SecondsBeyondAQint64OfMillisecondsAreNoTime) {
    // No time of a recording is longer than a day; past that, and past what a qint64 holds,
    // the text is refused rather than wrapped around.
    EXPECT_EQ(SecondsTextToMs(u"86400.000"), 86400000);
    EXPECT_EQ(SecondsTextToMs(u"86400.001"), -1);
    EXPECT_EQ(SecondsTextToMs(u"9223372036854775"), -1);
    EXPECT_EQ(SecondsTextToMs(u"055555555555555555555555555555555555555555555555555555555555"), -1);
    EXPECT_EQ(SecondsTextToMs(u"99999999999999999999.000"), -1);
    EXPECT_EQ(SecondsTextToMs(u"0000000000000000000000000000012.250"), 12250);
}

TEST(OutsideNumbers, FfmpegLengthsBeyondAnyFileAreNoLength) {
    EXPECT_EQ(FfmpegDurationMs(u"  Duration: 01:02:03.45, start: 0.000000"_qs), 3723450);
    // Hours whose milliseconds overflow, and hours too long to be a number at all.
    EXPECT_EQ(FfmpegDurationMs(u"  Duration: 2562047788015:00:00.00, start: 0"_qs), -1);
    EXPECT_EQ(FfmpegDurationMs(u"  Duration: 99999999999999999999:00:00.00, start: 0"_qs), -1);
    EXPECT_EQ(FfmpegProgressMs(u"frame=1 time=2562047788015:00:00.00 bitrate=1"_qs), -1);
    const ProbedLengths probed = FfprobeLengths(u"codec_type=video\nduration=1e300\n"
                                                "codec_type=audio\nduration=inf\n"
                                                "duration=2.5\n"_qs);
    EXPECT_EQ(probed.videoMs, -1);
    EXPECT_EQ(probed.audioMs, -1);
    EXPECT_EQ(probed.formatMs, 2500);
}

TEST(OutsideNumbers, ProgressPercentStaysInRangeForAnyClock) {
    EXPECT_EQ(FfmpegProgressPercent(5000, 10000), 50);
    EXPECT_EQ(FfmpegProgressPercent(20000, 10000), 99);
    EXPECT_EQ(FfmpegProgressPercent(4000000000000000000, 8000000000000000000), 50);
    EXPECT_EQ(FfmpegProgressPercent(8999999999999999999, 9000000000000000000), 99);
    EXPECT_EQ(FfmpegProgressPercent(0, 0), 0);
}
