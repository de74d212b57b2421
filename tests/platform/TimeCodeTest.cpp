#include "platform/TimeCode.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(TimeCode, MillisecondsGiveACodeWithoutTrailingZeros) {
    EXPECT_EQ(TimeCodeFromMs(65500), "00:01:05.5");
    EXPECT_EQ(TimeCodeFromMs(7000), "00:00:07.");
    EXPECT_EQ(TimeCodeFromMs(12345), "00:00:12.345");
    EXPECT_EQ(TimeCodeFromMs(4050), "00:00:04.05");
    EXPECT_EQ(TimeCodeFromMs(3600000), "01:00:00.");
    EXPECT_EQ(TimeCodeFromMs(360000000), "100:00:00.");
}

TEST(TimeCode, CodeToSecondsReadsFixedPositions) {
    EXPECT_EQ(HHMMSSMSToSecondsInSSMSFormat("00:01:05.5"), "65.5");
    EXPECT_EQ(HHMMSSMSToSecondsInSSMSFormat("00.01.05.000"), "65.000");
    EXPECT_EQ(HHMMSSMSToSecondsInSSMSFormat("01:02:05.125"), "3725.125");
    EXPECT_EQ(HHMMSSMSToSecondsInSSMSFormat("00:00:07"), "7.");
    EXPECT_EQ(HHMMSSMSToSecondsInSSMSFormat(""), "0.");
}

TEST(TimeCode, RoundTripKeepsSecondsAndFractionDigitsBelow32768) {
    for (int whole = 0; whole < 32768; whole += 7) {
        for (const char* fraction : {"", "5", "05", "125", "999"}) {
            const QString seconds = QString::number(whole) + u'.' + QLatin1String(fraction);
            const QString code = TimeCodeFromMs(SecondsTextToMs(seconds));
            // A text such as "12.50" is the number 12.5: compare with its shortest form.
            QString expected = QString::number(whole) + u'.' + QLatin1String(fraction);
            while (expected.endsWith(u'0') && expected.contains(u'.') &&
                   expected.indexOf(u'.') < expected.size() - 1)
                expected.chop(1);
            ASSERT_EQ(HHMMSSMSToSecondsInSSMSFormat(code), expected) << code.toStdString();
        }
    }
}

TEST(TimeCode, EventLogSecondsTextAndBack) {
    EXPECT_EQ(SecondsTextFromMs(65000), "65.000");
    EXPECT_EQ(SecondsTextFromMs(2125), "2.125");
    EXPECT_EQ(SecondsTextFromMs(3725125), "3725.125");
    for (qint64 ms = 0; ms < 4000000; ms += 4999)
        ASSERT_EQ(SecondsTextToMs(SecondsTextFromMs(ms)), ms);
}
