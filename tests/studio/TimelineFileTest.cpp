#include "studio/TimelineFile.h"
#include "platform/TextFiles.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;
using enum MediaKind;

TEST(TimelineFile, BadLinesAreRejectedWithTheirLineNumber) {
    const QString good = "1\tPictures\t2.000\t\t/p.jpg\r\n";
    EXPECT_EQ(ParseTimelineText(good + "2\tPictures\tsoon\t\t/q.jpg\r\n", "/").error,
              "line 2: the time \"soon\" is not a number of seconds");
    EXPECT_EQ(ParseTimelineText(good + good + "only\tthree\tfields\r\n", "/").error.left(7),
              "line 3:");
    EXPECT_EQ(ParseTimelineText("1\tMovie\t2.000\t\t/p.jpg\r\n", "/").error,
              "line 1: unknown media type \"Movie\"");
    EXPECT_EQ(ParseTimelineText("0\tVideo\t2.000\t\t/v.mp4\r\n", "/").error,
              "line 1: the count \"0\" is not a positive number");
    EXPECT_TRUE(ParseTimelineText("", "/").ok());
}

TEST(TimelineFile, RoundTripWithPathsRelativeToTheFileFolder) {
    QTemporaryDir dir;
    const QString project = dir.filePath("My 'Project'");
    const QList<TimelineEvent> rows{
        {Video, 0, 500, "/media/clip one.mp4", {}},
        {Text, 3250, std::nullopt, project + "/Hello there.jpg", "Hello there"},
        {Pictures, 7000, std::nullopt, project + "/pics/a.jpg", {}},
        {Untyped, 65000, std::nullopt, "/media/tune.mid", {}}};
    const QString file = project + "/Timeline.txt";
    QDir().mkpath(project);
    ASSERT_TRUE(WriteTimelineFile(rows, file));
    EXPECT_EQ(ReadFileToBytes(file), "1\tVideo\t0.000\t0.500\t/media/clip one.mp4\r\n"
                                     "2\tText\t3.250\t\tHello there.jpg\tHello there\r\n"
                                     "3\tPictures\t7.000\t\tpics/a.jpg\r\n"
                                     "4\t\t65.000\t\t/media/tune.mid\r\n");
    const TimelineReadResult back = ReadTimelineFile(file);
    ASSERT_TRUE(back.ok()) << back.error.toStdString();
    EXPECT_EQ(back.rows, rows);
}

// Timeline files edited by hand come with other line ends and encodings than the studio writes.
TEST(TimelineFile, HandEditedFilesReadOrSayWhatIsWrong) {
    QTemporaryDir dir;
    const QByteArray rows = "1\tVideo\t0.000\t\t/media/clip.mp4\n2\tPictures\t3.250\t\t/p.jpg\n";
    auto read = [&dir](const QByteArray& bytes) {
        const QString file = dir.filePath("Timeline.txt");
        EXPECT_TRUE(WriteWholeFile(bytes, file));
        return ReadTimelineFile(file);
    };
    for (const QByteArray& bytes :
         {rows, "\xEF\xBB\xBF" + rows, QByteArray(rows).replace("\n", "\r"),
          "\xEF\xBB\xBF" + QByteArray(rows).replace("\n", "\r\n")}) {
        const TimelineReadResult r = read(bytes);
        ASSERT_TRUE(r.ok()) << r.error.toStdString();
        ASSERT_EQ(r.rows.size(), 2);
        EXPECT_EQ(r.rows[1], (TimelineEvent{Pictures, 3250, std::nullopt, "/p.jpg", {}}));
    }
    // UTF-16 (with a mark or without) and Windows-1252 read as the same rows.
    const QString text = QString::fromUtf8(rows).replace("/p.jpg", "/caf\u00E9.jpg");
    QByteArray utf16le("\xFF\xFE");
    utf16le.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    const QByteArray latin = QByteArray(rows).replace("/p.jpg", "/caf\xE9.jpg");
    for (const QByteArray& bytes : {utf16le, utf16le.mid(2), latin}) {
        const TimelineReadResult r = read(bytes);
        ASSERT_TRUE(r.ok()) << r.error.toStdString();
        ASSERT_EQ(r.rows.size(), 2);
        EXPECT_EQ(r.rows[1].file, QStringLiteral("/caf\u00E9.jpg"));
    }
    // Begin positions as older studios wrote them: every digit, two decimals, no leading zero.
    const TimelineReadResult starts =
        ParseTimelineText("1\tVideo\t7.\t12.3456789\t/v.avi\n2\tVideo\t8\t.5\t/v.avi\n"
                          "3\tVideo\t9.0\t\f2.25 \t/v.avi",
                          "/");
    ASSERT_EQ(starts.rows.size(), 3) << starts.error.toStdString();
    EXPECT_EQ(starts.rows[0].atMs, 7000);
    EXPECT_EQ(starts.rows[0].startMs, 12345); // digits past the millisecond are cut
    EXPECT_EQ(starts.rows[1].startMs, 500);
    EXPECT_EQ(starts.rows[2].startMs, 2250);
    EXPECT_TRUE(read(QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)).error.contains("zero bytes"));
}

// Times too long for any take are refused by their line, never wrapped into a small time.
TEST(TimelineFile, TimesPastADayAreRefusedNamingTheLine) {
    const QString good = "1\tPictures\t2.000\t\t/p.jpg\r\n";
    for (const char* time : {"18446744073709551.617", "18446744073709552", "99999999999999999999"})
        EXPECT_EQ(
            ParseTimelineText(good + QStringLiteral("2\tPictures\t%1\t\t/q.jpg").arg(time), "/")
                .error,
            QStringLiteral("line 2: the time \"%1\" is more than 24 hours").arg(time));
    EXPECT_EQ(ParseTimelineText(good + "2\tVideo\t3.000\t1e400\t/v.mp4", "/").error,
              "line 2: the begin position \"1e400\" is not a number of seconds");
    EXPECT_EQ(ParseTimelineText(good + "2\tVideo\t3.000\t100000\t/v.mp4", "/").error,
              "line 2: the begin position \"100000\" is more than 24 hours");
}

// Whatever a row holds, its line reads back as one row: a saved project always opens again.
TEST(TimelineFile, ControlCharactersCannotBreakTheLine) {
    const TimelineEvent row{Text, 2000, std::nullopt, "/w/a\nb\tc\rd\x01.jpg", "x\ty\nz"};
    EXPECT_TRUE(ControlCharacterIn(row.file));
    EXPECT_TRUE(ControlCharacterIn(QStringLiteral("a\u0085b"))); // a C1 line end
    EXPECT_FALSE(ControlCharacterIn(QStringLiteral("/m/caf\u00E9 (1).jpg")));
    const TimelineReadResult back = ParseTimelineText(TimelineText({row, row}, "/"), "/");
    ASSERT_TRUE(back.ok()) << back.error.toStdString();
    ASSERT_EQ(back.rows.size(), 2);
    EXPECT_EQ(back.rows[0].file, QStringLiteral("/w/a\uFFFDb\uFFFDc\uFFFDd\uFFFD.jpg"));
    EXPECT_EQ(back.rows[0].text, QStringLiteral("x\uFFFDy\uFFFDz"));
}
