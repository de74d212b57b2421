#include "captions/SubtitleFiles.h"
#include "support/CuePrinting.h"

#include <gtest/gtest.h>

using namespace cq;

namespace {

const CaptionCues kCues{{0, 1500, QStringLiteral("Hello there")},
                        {1500, 4025, QStringLiteral("Grüße aus Köln\nzweite Zeile")},
                        {3723004, 3725000, QStringLiteral("a < b & c")}};

} // namespace

TEST(SubtitleFiles, SrtAndVttCarryTimesAndTextThere) {
    const QByteArray srt = WriteSrt(kCues);
    EXPECT_TRUE(srt.startsWith("1\n00:00:00,000 --> 00:00:01,500\nHello there\n\n2\n"));
    EXPECT_TRUE(srt.contains("3\n01:02:03,004 --> 01:02:05,000\na < b & c\n"));
    const QByteArray vtt = WriteVtt(kCues);
    EXPECT_TRUE(vtt.startsWith("WEBVTT\n\n00:00:00.000 --> 00:00:01.500\nHello there\n\n"));
    EXPECT_TRUE(vtt.contains("a &lt; b &amp; c")) << vtt.constData();
    for (const QByteArray& file : {srt, vtt}) {
        const ReadCues back = ReadSubtitles(file);
        EXPECT_EQ(back.problem, QString());
        EXPECT_EQ(back.cues, kCues);
    }
}

TEST(SubtitleFiles, HostileTextsCannotBreakTheFileApart) {
    const CaptionCues hostile{{0, 1000, QStringLiteral("look --> here\r\n\r\n\r\n2\n")},
                              {1000, 2000, QStringLiteral("   \n\n")},
                              {2000, 3000, QStringLiteral("last")}};
    for (const QByteArray& file : {WriteSrt(hostile), WriteVtt(hostile)}) {
        const ReadCues back = ReadSubtitles(file);
        EXPECT_EQ(back.problem, QString()) << file.constData();
        ASSERT_EQ(back.cues.size(), 2) << file.constData(); // the blank cue is not written
        EXPECT_EQ(back.cues[0].text, QStringLiteral("look --\u00A0> here\n2"));
        EXPECT_EQ(back.cues[0].endMs, 1000);
        EXPECT_EQ(back.cues[1], (CaptionCue{2000, 3000, QStringLiteral("last")}));
    }
}

TEST(SubtitleFiles, ReadsWhatOtherProgramsWrite) {
    // CR LF, a byte order mark, cue names and settings, short WebVTT times, a note, one bad cue.
    const QByteArray vtt = "\xEF\xBB\xBFWEBVTT - made elsewhere\r\n\r\nNOTE a remark\r\n\r\n"
                           "intro\r\n01:02.500 --> 01:04.000 line:90%\r\nFirst\r\n\r\n"
                           "00:01:05.000 --> soon\r\nbroken\r\n\r\n"
                           "00:01:06.000 --> 00:01:07.250\r\n&lt;b&gt; &amp;\r\n";
    const ReadCues read = ReadSubtitles(vtt);
    ASSERT_EQ(read.cues.size(), 2);
    EXPECT_EQ(read.cues[0], (CaptionCue{62500, 64000, QStringLiteral("First")}));
    EXPECT_EQ(read.cues[1], (CaptionCue{66000, 67250, QStringLiteral("<b> &")}));
    EXPECT_TRUE(read.problem.contains(QStringLiteral("00:01:05.000 --> soon")));

    const QByteArray srt = "1\r\n00:00:01,000 --> 00:00:02,000\r\nOne\r\n\r\n\r\n"
                           "2\r\n00:00:02,000 --> 00:00:01,000\r\nends before it starts\r\n";
    const ReadCues srtRead = ReadSubtitles(srt);
    ASSERT_EQ(srtRead.cues.size(), 1);
    EXPECT_EQ(srtRead.cues[0], (CaptionCue{1000, 2000, QStringLiteral("One")}));
    EXPECT_FALSE(srtRead.problem.isEmpty());
}

TEST(SubtitleFiles, OtherEncodingsReadAsTheirText) {
    const QString srt =
        QStringLiteral("1\r\n00:00:01,000 --> 00:00:02,500\r\nCaf\u00E9 cr\u00E8me \u20AC\r\n");
    QByteArray utf16le("\xFF\xFE");
    utf16le.append(reinterpret_cast<const char*>(srt.utf16()), srt.size() * 2);
    // Windows-1252, as older editors save: é, è, and the euro sign where Latin-1 has a control.
    const QByteArray ansi("1\r\n00:00:01,000 --> 00:00:02,500\r\nCaf\xE9 cr\xE8me \x80\r\n");
    for (const QByteArray& bytes : {ansi, utf16le, utf16le.mid(2)}) {
        const ReadCues read = ReadSubtitles(bytes);
        EXPECT_EQ(read.problem, "");
        ASSERT_EQ(read.cues.size(), 1) << bytes.toHex().toStdString();
        EXPECT_EQ(read.cues[0],
                  (CaptionCue{1000, 2500, QStringLiteral("Caf\u00E9 cr\u00E8me \u20AC")}));
    }
    const QString vtt = QStringLiteral("WEBVTT\n\n00:01.000 --> 00:02.000\n\u00C0 bient\u00F4t\n");
    QByteArray utf16be;
    for (QChar c : QString(QChar(0xFEFF)) + vtt)
        utf16be.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xFF));
    const ReadCues read = ReadSubtitles(utf16be);
    ASSERT_EQ(read.cues.size(), 1);
    EXPECT_EQ(read.cues[0].text, QStringLiteral("\u00C0 bient\u00F4t"));
}

TEST(SubtitleFiles, HoursTooLargeForAnyVoiceAreRefusedByTheirLine) {
    const QByteArray srt = "1\n00:00:01,000 --> 00:00:02,000\nOne\n\n"
                           "2\n18446744073709551616:00:05,000 --> 18446744073709551616:00:06,000\n"
                           "Wrapped to the start before\n\n"
                           "3\n9999999999999999999:00:05,000 --> 9999999999999999999:00:06,000\n"
                           "Read as hour 0 before\n\n"
                           "4\n00:00:07,000 --> 00:00:08,000\nFour\n";
    const ReadCues read = ReadSubtitles(srt);
    ASSERT_EQ(read.cues.size(), 2);
    EXPECT_EQ(read.cues[1], (CaptionCue{7000, 8000, QStringLiteral("Four")}));
    EXPECT_TRUE(read.problem.startsWith("2 cue(s) could not be read, the first at line 6, "))
        << read.problem.toStdString();
    EXPECT_TRUE(
        read.problem.endsWith("the start \"18446744073709551616:00:05,000\" is more than 24 hours"))
        << read.problem.toStdString();
    // A line that is no timing line at all is named by its number too.
    EXPECT_TRUE(ReadSubtitles("1\n00:00:01,000 --> 00:00:02,000\nOne\n\nstray words\n")
                    .problem.contains("line 5, \"stray words\""));
}
