#include "text/TextListFile.h"
#include "platform/TextFiles.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

TEST(TextListFile, TwoEntriesAreInvertedBytesThenAPlainCrLf) {
    const QByteArray bytes = EncodeTextList({"Hi", "Yo"});
    const QByteArray expected("\xb7\x96\xf2\xf5\xa6\x90\xf2\xf5\r\n");
    EXPECT_EQ(bytes, expected);
}

TEST(TextListFile, DefaultListBytesHaveNoLineBreakButTheLast) {
    const QByteArray bytes = EncodeTextList(DefaultTextList());
    EXPECT_TRUE(bytes.endsWith("\r\n"));
    const QByteArray body = bytes.chopped(2);
    EXPECT_FALSE(body.contains('\r'));
    EXPECT_FALSE(body.contains('\n'));
    EXPECT_EQ(DecodeTextList(bytes), DefaultTextList());
}

TEST(TextListFile, RoundTripsUtf8AndSkipsBlankLines) {
    QTemporaryDir dir;
    const QString file = dir.filePath("TTS.txt");
    const QStringList entries{QString::fromUtf8("Grüße aus Köln"), "Doh!", "x = y; $(z)"};
    ASSERT_TRUE(SaveTextList(entries, file));
    EXPECT_EQ(LoadTextList(file), entries);
    ASSERT_TRUE(SaveTextListText("one\r\n\r\n\r\ntwo\r\n", file));
    EXPECT_EQ(LoadTextList(file), QStringList({"one", "two"}));
    EXPECT_EQ(DecodeTextListForEditing(ReadFileToBytes(file)), "one\r\n\r\n\r\ntwo\r\n");
}

TEST(TextListFile, EmptyListIsOnlyTheFinalCrLf) {
    QTemporaryDir dir;
    const QString file = dir.filePath("TTS.txt");
    ASSERT_TRUE(SaveTextList({}, file));
    EXPECT_EQ(ReadFileToBytes(file), "\r\n");
    EXPECT_TRUE(LoadTextList(file).isEmpty());
    EXPECT_TRUE(DecodeTextList("x").isEmpty());
}

// Older installations inverted Windows-1252 bytes, not UTF-8: "é" was the single byte 0xE9.
TEST(TextListFile, ListOfAnOlderInstallationReadsBackInWindows1252) {
    QByteArray plain("Caf\xe9 \x93ol\xe9\x94 \x80"
                     "5\r\nDoh!\r\n");
    QByteArray file;
    for (char c : plain)
        file.append(char(255 - static_cast<unsigned char>(c)));
    file += "\r\n";
    EXPECT_EQ(DecodeTextList(file), QStringList({QString::fromUtf8("Café “olé” €5"), "Doh!"}));

    // Saved again, the list is UTF-8 and reads back the same.
    QTemporaryDir dir;
    const QString tts = dir.filePath("TTS.txt");
    ASSERT_TRUE(SaveTextList(DecodeTextList(file), tts));
    const QByteArray saved = ReadFileToBytes(tts);
    QByteArray back;
    for (char c : saved.chopped(2))
        back.append(char(255 - static_cast<unsigned char>(c)));
    EXPECT_EQ(back, QByteArray("Caf\xc3\xa9 \xe2\x80\x9col\xc3\xa9\xe2\x80\x9d \xe2\x82\xac"
                               "5\r\nDoh!\r\n"));
    EXPECT_EQ(LoadTextList(tts), DecodeTextList(file));
}
