#include "studio/DirectorySettings.h"
#include "platform/TextFiles.h"
#include "support/TestAppFolder.h"

#include <gtest/gtest.h>

using namespace cq;

TEST(DirectorySettings, LinesSetOnlyExactKeysAndKeepEverythingAfterTheFirstEquals) {
    DirectorySettings s;
    s.loadSettingsText("gstrMyVideoDirectory=/media/Clips\r\n"
                       "gstrmyvideodirectory=/wrong\r\n"
                       "gstrMyMusicDirectory=/a=b=c\r\n"
                       "no equals sign here\r\n"
                       "\r\n"
                       "gstrUnknown=/x\r\n"
                       "gstrMyPicturesDirectory=007\r\n"
                       "gstrMyStdPicturesDirectory1=2009\r\n",
                       false);
    EXPECT_EQ(s.gstrMyVideoDirectory, "/media/Clips");
    EXPECT_EQ(s.gstrMyMusicDirectory, "/a=b=c");
    EXPECT_EQ(s.gstrMyPicturesDirectory, "7");
    EXPECT_EQ(s.gstrMyStdPicturesDirectory1, "2009");
}

TEST(DirectorySettings, SiblingFileSetsOnlyTheFirstThreeFolders) {
    DirectorySettings s;
    s.gstrRenderToFileSpec = "/kept.avi";
    s.loadSettingsText("gstrMyVideoDirectory=/v\r\ngstrRenderToFileSpec=/x.avi\r\n"
                       "gstrMyStdPicturesDirectory1=/y\r\n",
                       true);
    EXPECT_EQ(s.gstrMyVideoDirectory, "/v");
    EXPECT_EQ(s.gstrRenderToFileSpec, "/kept.avi");
    EXPECT_TRUE(s.gstrMyStdPicturesDirectory1.isEmpty());
}

TEST(DirectorySettings, SaveIsByteExactAndRoundTripsUtf8Folders) {
    test::TestAppFolder folder(false);
    const QString file = folder.file("ClipquillSetup.txt");
    DirectorySettings s;
    s.gstrMyVideoDirectory = QString::fromUtf8("/home/zoë/Vidéos");
    s.gstrMyMusicDirectory = "/m";
    s.gstrMyPicturesDirectory = "/p";
    s.gstrMyStdPicturesDirectory1 = "/s1";
    s.gstrMyStdPicturesDirectory2 = "/s2";
    s.gstrRenderToFileSpec = "";
    ASSERT_TRUE(s.SaveDirectoriesToFile(file));
    const QByteArray expected = "gstrMyVideoDirectory=/home/zo\xc3\xab/Vid\xc3\xa9os\r\n"
                                "gstrMyMusicDirectory=/m\r\n"
                                "gstrMyPicturesDirectory=/p\r\n"
                                "gstrMyStdPicturesDirectory1=/s1\r\n"
                                "gstrMyStdPicturesDirectory2=/s2\r\n"
                                "gstrRenderToFileSpec=\r\n"
                                "\r\n";
    EXPECT_EQ(ReadFileToBytes(file), expected);
    DirectorySettings back;
    back.LoadDirectoriesFromClipquillSetupFile(file);
    EXPECT_EQ(back.gstrMyVideoDirectory, s.gstrMyVideoDirectory);
    EXPECT_EQ(back.gstrMyStdPicturesDirectory2, "/s2");

    // Written by an older installation in Windows-1252, or by an editor in UTF-16.
    const QString video = QStringLiteral("gstrMyVideoDirectory=/home/zo\u00EB/Vid\u00E9os\r\n");
    QByteArray utf16("\xFF\xFE");
    utf16.append(reinterpret_cast<const char*>(video.utf16()), video.size() * 2);
    for (const QByteArray& bytes : {video.toLatin1(), utf16}) {
        ASSERT_TRUE(WriteWholeFile(bytes, file));
        DirectorySettings old;
        old.LoadDirectoriesFromClipquillSetupFile(file);
        EXPECT_EQ(old.gstrMyVideoDirectory, s.gstrMyVideoDirectory);
    }
}

TEST(DirectorySettings, SavingKeepsLinesOfOtherKeysAlreadyInTheFile) {
    test::TestAppFolder folder(false);
    const QString file = folder.file("ClipquillSetup.txt");
    test::WriteFile(file, "gstrMyVideoDirectory=/old\r\nsomeOtherTool=/keep me\r\n\r\n");
    DirectorySettings s;
    s.LoadDirectoriesFromClipquillSetupFile(file);
    s.gstrMyVideoDirectory = "/new";
    ASSERT_TRUE(s.SaveDirectoriesToFile(file));
    const QByteArray bytes = ReadFileToBytes(file);
    EXPECT_TRUE(bytes.startsWith("gstrMyVideoDirectory=/new\r\n"));
    EXPECT_TRUE(bytes.endsWith("gstrRenderToFileSpec=\r\nsomeOtherTool=/keep me\r\n\r\n"));
}

TEST(DirectorySettings, StartupOrderOwnFileWinsAndDesktopFoldersFillTheRest) {
    test::TestAppFolder folder(false);
    const QString sibling = folder.file("HarrowfinSetup.txt");
    const QString own = folder.file("ClipquillSetup.txt");
    test::WriteFile(sibling, "gstrMyVideoDirectory=/sib/v\r\ngstrMyMusicDirectory=/sib/m\r\n");
    test::WriteFile(own, "gstrMyVideoDirectory=/own/v\r\n");
    DirectorySettings s;
    s.loadAtStartup(sibling, own, "/xdg/Videos", "/xdg/Music", "/xdg/Pictures");
    EXPECT_EQ(s.gstrMyVideoDirectory, "/own/v");
    EXPECT_EQ(s.gstrMyMusicDirectory, "/sib/m");
    EXPECT_EQ(s.gstrMyPicturesDirectory, "/xdg/Pictures");
    EXPECT_EQ(s.gstrMyStdPicturesDirectory1, "/own/v");
    EXPECT_EQ(s.gstrMyStdPicturesDirectory2, "/own/v");
    EXPECT_EQ(s.gstrMyVideoProjectsDirectory, "/own/v/MyVideoProjects");
}

TEST(DirectorySettings, BrokenFilesNeverStopStartup) {
    test::TestAppFolder folder(false);
    const QString own = folder.file("ClipquillSetup.txt");
    QByteArray binary;
    for (int i = 0; i < 512; ++i)
        binary.append(static_cast<char>(i * 37 % 256));
    test::WriteFile(own, binary);
    DirectorySettings s;
    s.loadAtStartup(folder.file("missing.txt"), own, "/xdg/Videos", "/xdg/Music", "/xdg/Pictures");
    EXPECT_EQ(s.gstrMyVideoDirectory, "/xdg/Videos");
    EXPECT_EQ(s.gstrMyMusicDirectory, "/xdg/Music");

    test::WriteFile(own, "");
    DirectorySettings empty;
    empty.loadAtStartup(folder.file("missing.txt"), own, "/xdg/Videos", "", "");
    EXPECT_EQ(empty.gstrMyVideoDirectory, "/xdg/Videos");
}
