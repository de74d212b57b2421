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
