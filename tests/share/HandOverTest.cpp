#include "platform/TextFiles.h"
#include "share/HandOverFiles.h"
#include "support/TestAppFolder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {

// Written out by hand rather than through the program's own encoder.
QByteArray Flipped(const QByteArray& plain) {
    QByteArray out;
    for (char c : plain)
        out.append(char(255 - static_cast<unsigned char>(c)));
    return out;
}

} // namespace

TEST(EmailHandOver, FilesHoldTheFlippedTextAndOnlyTheFinalLineEndIsPlain) {
    QTemporaryDir dir;
    const QString folder = dir.path() + "/SystemTemp"; // made by the hand-over
    ASSERT_TRUE(WriteEmailHandOver(folder, {EmailMessageText(), "/opt/cq/FinalMix.avi"}));

    const QByteArray message = ReadFileToBytes(folder + "/EmailMessageText.txt");
    EXPECT_EQ(message,
              Flipped("Check out this video...  I made it with Harrowfin.\r\n\r\n") + "\r\n");
    const QByteArray list = ReadFileToBytes(folder + "/EmailAttachmentList.txt");
    EXPECT_EQ(list, Flipped("/opt/cq/FinalMix.avi\r\n") + "\r\n");
    for (const QByteArray& bytes : {message, list}) {
        const QByteArray body = bytes.left(bytes.size() - 2);
        EXPECT_FALSE(body.contains('\n'));
        EXPECT_FALSE(body.contains('\r'));
        EXPECT_TRUE(bytes.endsWith("\r\n"));
    }
}

TEST(EmailHandOver, SecondHandOverReplacesBothFilesAndReadsBackUnchanged) {
    QTemporaryDir dir;
    const QString longPath = "/home/zoë/Vidéos/" + QString(300, 'x') + "/FinalMix.avi";
    ASSERT_TRUE(WriteEmailHandOver(dir.path(), {EmailMessageText() + "A long body", longPath}));
    const QString shortPath = "/home/zoë/Vidéos/FinalMix.mp3";
    ASSERT_TRUE(WriteEmailHandOver(dir.path(), {"Hi", shortPath}));

    EXPECT_EQ(ReadFileToBytes(dir.path() + "/EmailMessageText.txt"), Flipped("Hi") + "\r\n");
    const EmailHandOverReadResult read = ReadEmailHandOver(dir.path());
    ASSERT_TRUE(read.ok()) << read.error.toStdString();
    EXPECT_EQ(read.handOver.messageText, "Hi");
    EXPECT_EQ(read.handOver.attachmentPath, shortPath);
}

TEST(EmailHandOver, ReadingWithoutTheFilesSaysWhichOneIsMissing) {
    QTemporaryDir dir;
    EXPECT_TRUE(ReadEmailHandOver(dir.path()).error.contains("EmailMessageText.txt"));
    test::WriteFile(dir.path() + "/EmailMessageText.txt", Flipped("Hi") + "\r\n");
    EXPECT_TRUE(ReadEmailHandOver(dir.path()).error.contains("EmailAttachmentList.txt"));
    test::WriteFile(dir.path() + "/EmailAttachmentList.txt", "\r\n");
    EXPECT_FALSE(ReadEmailHandOver(dir.path()).ok()); // names no file
}

TEST(EmailHandOver, VoiceOnlyRecordingSendsTheSoundFileWhenItExists) {
    QTemporaryDir dir;
    const QString avi = dir.path() + "/FinalMix.avi";
    const QString mp3 = dir.path() + "/FinalMix.mp3";
    EXPECT_EQ(ChooseEmailAttachment(0, avi, mp3), avi); // no sound-only render yet
    test::WriteFile(mp3, "ID3");
    EXPECT_EQ(ChooseEmailAttachment(0, avi, mp3), mp3);
    EXPECT_EQ(ChooseEmailAttachment(1, avi, mp3), avi);
    EXPECT_EQ(ChooseEmailAttachment(7, avi, mp3), avi);
}

TEST(EmailHandOver, FilesOfAnOlderInstallationReadInWindows1252) {
    QTemporaryDir dir;
    test::WriteFile(dir.path() + "/EmailMessageText.txt",
                    Flipped("Voil\xe0 \x96 ma vid\xe9o\r\n") + "\r\n");
    test::WriteFile(dir.path() + "/EmailAttachmentList.txt",
                    Flipped("/home/zo\xeb/Vid\xe9os/FinalMix.avi\r\n") + "\r\n");
    const EmailHandOverReadResult read = ReadEmailHandOver(dir.path());
    ASSERT_TRUE(read.ok()) << read.error.toStdString();
    EXPECT_EQ(read.handOver.messageText, QString::fromUtf8("Voilà – ma vidéo\r\n"));
    EXPECT_EQ(read.handOver.attachmentPath, QString::fromUtf8("/home/zoë/Vidéos/FinalMix.avi"));
}
