#include "platform/OutsideText.h"
#include "platform/TimeText.h"

#include <QList>

#include <gtest/gtest.h>

using namespace cq;

namespace {

QByteArray utf16(const QString& text, bool bigEndian, bool mark) {
    QByteArray bytes;
    for (QChar c : (mark ? QString(QChar(0xFEFF)) : QString()) + text) {
        const char high = static_cast<char>(c.unicode() >> 8);
        const char low = static_cast<char>(c.unicode() & 0xFF);
        bytes.append(bigEndian ? high : low).append(bigEndian ? low : high);
    }
    return bytes;
}

qint64 seconds(const char* text) {
    return ReadTimeText(QString::fromLatin1(text), TimeTextForm::Seconds).ms;
}

qint64 clock(const char* text) {
    return ReadTimeText(QString::fromLatin1(text), TimeTextForm::Clock).ms;
}

} // namespace

TEST(OutsideText, EveryEncodingAnEditorSavesInReadsAsTheSameText) {
    const QString text = QStringLiteral("1\tVideo\t0.000\t\t/m/caf\u00E9 \u20AC.mp4\r\n");
    const QList<QByteArray> encodings{
        text.toUtf8(),
        "\xEF\xBB\xBF" + text.toUtf8(),
        utf16(text, false, true),
        utf16(text, true, true),
        utf16(text, false, false),
        utf16(text, true, false),
        // Windows-1252: é is 0xE9 as in Latin-1, the euro sign one of the bytes Latin-1 lacks.
        QByteArray("1\tVideo\t0.000\t\t/m/caf\xE9 \x80.mp4\r\n"),
    };
    for (const QByteArray& bytes : encodings) {
        const OutsideText decoded = DecodeOutsideText(bytes);
        EXPECT_TRUE(decoded.ok()) << decoded.problem.toStdString();
        EXPECT_EQ(decoded.text, text) << bytes.toHex().toStdString();
    }
    EXPECT_EQ(DecodeOutsideText("").text, "");
}

TEST(OutsideText, ZeroBytesOutsideUtf16AreNoText) {
    const OutsideText png = DecodeOutsideText(QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
    EXPECT_EQ(png.problem, "holds zero bytes, so it is not text");
    EXPECT_FALSE(DecodeOutsideText(QByteArray("1\tVideo\t0.000\t\t/a\0b.mp4", 24)).ok());
}

TEST(TimeText, SecondsReadAsWrittenAndLongNumbersAreRefusedNotWrapped) {
    EXPECT_EQ(seconds("65.125"), 65125);
    EXPECT_EQ(seconds(" 7. "), 7000);
    EXPECT_EQ(seconds(".5"), 500);
    EXPECT_EQ(seconds("12.3456789"), 12345);
    EXPECT_EQ(seconds("00000000000000000000000001.000"), 1000); // leading zeros add nothing
    EXPECT_EQ(seconds("86400"), kLongestTimeMs);
    for (const char* bad : {"", ".", "1e3", "-2.0", "+2", "1,5", "1:30", "1.2.3", "12.5x"})
        EXPECT_EQ(seconds(bad), -1) << bad;
    // These wrapped around a 64-bit number: 2^64 / 1000 + 1 seconds came out as 1 second.
    for (const char* large : {"86400.001", "18446744073709552", "18446744073709551.616",
                              "99999999999999999999", "9223372036854775808"}) {
        const TimeTextRead read = ReadTimeText(QString::fromLatin1(large), TimeTextForm::Seconds);
        EXPECT_EQ(read.ms, -1) << large;
        EXPECT_EQ(read.problem, QStringLiteral("\"%1\" is more than 24 hours").arg(large));
    }
    EXPECT_EQ(ReadTimeText(u"soon", TimeTextForm::Seconds).problem,
              "\"soon\" is not a number of seconds");
}

TEST(TimeText, ClockTimesKeepTheirFieldsUnderSixtyAndTheWholeUnderADay) {
    EXPECT_EQ(clock("1:02:03,040"), 3723040);
    EXPECT_EQ(clock("00:01:05.000"), 65000);
    EXPECT_EQ(clock("02:03.5"), 123500);
    EXPECT_EQ(clock("90:00"), 5400000); // minutes without an hour field may pass sixty
    EXPECT_EQ(clock("24:00:00.000"), kLongestTimeMs);
    for (const char* bad : {"1:60", "1:75:00", "1:2:3:4", "1::2", ":5", "1:", "1:.5", "a:00"})
        EXPECT_EQ(clock(bad), -1) << bad;
    // Hours of 19 or 20 digits read as 0 before, and the cue played at the start.
    for (const char* large : {"24:00:00.001", "18446744073709551616:00:05.000",
                              "9999999999999999999:00:05,000", "1440:00.001"}) {
        const TimeTextRead read = ReadTimeText(QString::fromLatin1(large), TimeTextForm::Clock);
        EXPECT_EQ(read.ms, -1) << large;
        EXPECT_TRUE(read.problem.endsWith("is more than 24 hours")) << large;
    }
    // A hostile line is quoted by its start only.
    const QString longLine(500, u'9');
    EXPECT_LT(ReadTimeText(longLine, TimeTextForm::Clock).problem.size(), 80);
}
