#include "share/SaveCopy.h"
#include "platform/TextFiles.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

TEST(SaveCopy, NamesWithSlashesOrOnlyBlanksAreRefusedWithAReason) {
    for (const QString bad : {"", "   ", "clips/trip", "/etc/passwd", "..", " . "})
        EXPECT_FALSE(SaveNameProblem(bad).isEmpty()) << bad.toStdString();
    for (const QString good : {"Trip", "  Trip to the sea  ", "Zoë's clip (1)", "$(rm -rf ~)"})
        EXPECT_TRUE(SaveNameProblem(good).isEmpty()) << good.toStdString();
}

TEST(SaveCopy, TargetUsesTrimmedNameAndTheSourcesExtensionEvenAtTheRoot) {
    EXPECT_EQ(SaveCopyTarget("/media/usb/", "  Trip ", "/a/FinalMix.avi"), "/media/usb/Trip.avi");
    EXPECT_EQ(SaveCopyTarget("/", "Trip", "/a/FinalMix.mp3"), "/Trip.mp3");
    EXPECT_EQ(TrimChosenFolder("/media/usb//"), "/media/usb");
    EXPECT_EQ(TrimChosenFolder("/"), "/");
}

TEST(SaveCopy, OnlyTheSoundFileCountsWhenThereIsNoVideo) {
    QTemporaryDir dir;
    const QString avi = dir.path() + "/FinalMix.avi";
    const QString mp3 = dir.path() + "/FinalMix.mp3";
    EXPECT_TRUE(RenderedFileToSave(avi, mp3).isEmpty());
    test::WriteFile(mp3, "sound");
    EXPECT_EQ(RenderedFileToSave(avi, mp3), mp3);
    test::WriteFile(avi, "video");
    EXPECT_EQ(RenderedFileToSave(avi, mp3), avi);
}

TEST(SaveCopy, CopyReplacesWholeOrLeavesTheTargetAlone) {
    QTemporaryDir dir;
    const QString source = dir.path() + "/FinalMix.avi";
    const QByteArray video(3 << 20, 'v'); // more than one copy chunk
    test::WriteFile(source, video);
    const QString target = dir.path() + "/it's $(touch pwned) \"Trip\".avi";
    test::WriteFile(target, "an older clip");
    EXPECT_TRUE(CopyFileReplacing(source, target).isEmpty());
    EXPECT_EQ(ReadFileToBytes(target), video);
    EXPECT_FALSE(QFile::exists(dir.path() + "/pwned"));

    EXPECT_FALSE(CopyFileReplacing(source, dir.path() + "/no such folder/Trip.avi").isEmpty());
    EXPECT_FALSE(CopyFileReplacing(dir.path() + "/missing.avi", target).isEmpty());
    EXPECT_EQ(ReadFileToBytes(target), video); // a failed copy destroys nothing
    QDir(dir.path()).mkdir("Folder.avi");
    EXPECT_FALSE(CopyFileReplacing(source, dir.path() + "/Folder.avi").isEmpty());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files).size(), 2); // no temporary file left
}

// A player finds a clip's captions by its name, so they go where the clip goes.
TEST(SaveCopy, TheCaptionsBesideTheClipGoAlongWithIt) {
    QTemporaryDir dir;
    const QString source = dir.path() + "/FinalMix.avi";
    test::WriteFile(source, "video");
    test::WriteFile(dir.path() + "/FinalMix.srt", "1\n00:00:00,000 --> 00:00:01,000\nHi\n");
    test::WriteFile(dir.path() + "/FinalMix.vtt", "WEBVTT\n\n00:00.000 --> 00:01.000\nHi\n");
    QDir(dir.path()).mkdir("saved");
    const QString target = dir.path() + "/saved/Trip to the lake.avi";
    ASSERT_TRUE(CopyFileReplacing(source, target).isEmpty());
    EXPECT_TRUE(CopySubtitlesAlong(source, target).isEmpty());
    for (const char* suffix : {".srt", ".vtt"})
        EXPECT_EQ(ReadFileToBytes(dir.path() + "/saved/Trip to the lake" + suffix),
                  ReadFileToBytes(dir.path() + "/FinalMix" + suffix));

    // Only what is there is copied; a folder in the way is said.
    QFile::remove(dir.path() + "/FinalMix.vtt");
    EXPECT_TRUE(CopySubtitlesAlong(source, dir.path() + "/saved/Other.avi").isEmpty());
    EXPECT_EQ(QDir(dir.path() + "/saved").entryList({"Other.*"}, QDir::Files),
              QStringList{"Other.srt"});
    QDir(dir.path() + "/saved").mkdir("Blocked.srt");
    EXPECT_FALSE(CopySubtitlesAlong(source, dir.path() + "/saved/Blocked.avi").isEmpty());
}
