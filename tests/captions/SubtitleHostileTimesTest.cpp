// Subtitle files from outside whose times no clip could have: the cue is named as unreadable
// instead of its time wrapping around into one that looks real.
#include "captions/SubtitleFiles.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(SubtitleHostileTimes, HoursBeyondAQint64OfMillisecondsMakeTheCueUnreadable) {
    const ReadCues read =
        ReadSubtitles("1\n"
                      "999999999999999999:00:00,000 --> 999999999999999999:00:00,001\n"
                      "overflowing\n\n"
                      "2\n"
                      "99999999999999999999:00:00,000 --> 99999999999999999999:00:01,000\n"
                      "not a number\n\n"
                      "3\n"
                      "23:00:00,000 --> 23:00:01,500\n"
                      "long but real\n");
    ASSERT_EQ(read.cues.size(), 1);
    EXPECT_EQ(read.cues[0].startMs, 82800000);
    EXPECT_EQ(read.cues[0].endMs, 82801500);
    EXPECT_TRUE(read.problem.startsWith("2 cue(s) could not be read"))
        << read.problem.toStdString();
}
