#include "app/Startup.h"
#include "StudioProcess.h"
#include "platform/TextFiles.h"
#include "studio/AppFolder.h"
#include "support/FifoWatch.h"
#include "support/TestAppFolder.h"
#include "text/TextListFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace cq;

namespace {

using test::StudioRun;

// The studio program with its own home, and PATH when one is given.
StudioRun runStudio(const QStringList& args, const QString& home, const QString& path = {}) {
    QMap<QString, QString> env{{"HOME", home},
                               {"XDG_CONFIG_HOME", home + "/.config"},
                               {"XDG_DATA_HOME", home + "/.local/share"}};
    if (!path.isNull())
        env.insert("PATH", path);
    return test::RunStudioProgram(args, env);
}

} // namespace

TEST(Startup, FirstRunCreatesTheWorkFoldersAndTheDefaultTextList) {
    test::TestAppFolder app;
    test::WriteFile(app.file("HarrowfinSetup.txt"), "");
    const QString videos = app.home() + "/My Videos";
    test::WriteFile(app.file("ClipquillSetup.txt"),
                    ("gstrMyVideoDirectory=" + videos + "\r\n\r\n").toUtf8());
    const WindowlessStartup s = WindowlessStartup::run(app.path(), XdgFolders::fromDesktop());
    EXPECT_TRUE(s.problems.isEmpty()) << s.problems.join("; ").toStdString();
    for (const char* folder : {"Temp", "ClipquillTempFiles", "SmallPics", "SystemTemp"})
        EXPECT_TRUE(QFileInfo(app.file(folder)).isDir()) << folder;
    EXPECT_TRUE(QFileInfo(videos + "/MyVideoProjects").isDir());
    EXPECT_EQ(s.textList, DefaultTextList());
    EXPECT_EQ(ReadFileToBytes(app.file("System/TTS.txt")), EncodeTextList(DefaultTextList()));
}

TEST(Startup, AnExistingTextListIsReadNotReplaced) {
    test::TestAppFolder app;
    ASSERT_TRUE(SaveTextList({"Hi", "Yo"}, app.file("System/TTS.txt")));
    const WindowlessStartup s = WindowlessStartup::run(app.path(), XdgFolders::fromDesktop());
    EXPECT_EQ(s.textList, QStringList({"Hi", "Yo"}));
}

TEST(Startup, FifosInPlaceOfTheSettingsAndTextListAreRefusedNotRead) {
    test::TestAppFolder app;
    QFile::remove(app.file("System/TTS.txt"));
    test::FifoWatch fifos;
    for (const char* name : {"ClipquillSetup.txt", "HarrowfinSetup.txt", "System/TTS.txt"})
        ASSERT_TRUE(fifos.make(app.file(name))) << name;
    fifos.start();
    const WindowlessStartup s = WindowlessStartup::run(app.path(), XdgFolders::fromDesktop());
    EXPECT_EQ(fifos.stop(), QStringList()) << "start-up would have waited for a writer";
    for (const char* name : {"ClipquillSetup.txt", "HarrowfinSetup.txt", "System/TTS.txt"}) {
        const QString sentence = "\"" + app.file(name) + "\" is not a regular file";
        EXPECT_EQ(s.problems.filter(sentence).size(), 1) << s.problems.join('\n').toStdString();
    }
    EXPECT_EQ(s.textList, DefaultTextList());
    EXPECT_EQ(s.settings.gstrMyVideoDirectory, XdgFolders::fromDesktop().videos);
    EXPECT_FALSE(QFileInfo(app.file("System/TTS.txt")).isFile()) << "what stands there stays";
}

TEST(CheckCommand, AnEmptyAppDirIsRefusedAndFifosAreReportedWithoutWaiting) {
    test::TestAppFolder app(false);
    StudioRun run = runStudio({"--app-dir", "", "--check"}, app.home());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.startsWith("--app-dir needs the name of a folder"))
        << run.err.toStdString();
    EXPECT_TRUE(run.out.isEmpty()) << "nothing was checked";

    const QString dir = app.path() + "/fifos";
    QDir().mkpath(dir);
    ASSERT_EQ(::mkfifo((dir + "/ClipquillSetup.txt").toLocal8Bit().constData(), 0644), 0);
    run = runStudio({"--app-dir", dir, "--check"}, app.home());
    EXPECT_TRUE(
        run.out.contains("problem: \"" + dir + "/ClipquillSetup.txt\" is not a regular file"))
        << run.out.toStdString();
}

TEST(CheckCommand, VersionAndUsageErrorsAnswerBeforeAnyFolderIsTouched) {
    test::TestAppFolder app(false);
    StudioRun run = runStudio({"--version"}, app.home());
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.startsWith("Clipquill v.")) << run.out.toStdString();
    run = runStudio({"--app-dir", app.path() + "/new", "--bogus"}, app.home());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains("bogus")) << run.err.toStdString();
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/new"));
}

TEST(AppFolder, AnEmptyFolderIsSeededWithToolLinksAndMedia) {
    test::TestAppFolder app(false);
    const QString target = app.path() + QString::fromUtf8("/new 'folder' $(x) ; ü");
    const AppFolderChoice c = ChooseAppFolder(target, CQ_BUILD_APP_DIR, app.path() + "/fallback");
    ASSERT_EQ(c.folder, target);
    EXPECT_TRUE(c.problem.isEmpty());
    EXPECT_TRUE(QFileInfo(target + "/SystemMedia/Black.jpg").isFile());
    EXPECT_TRUE(QFileInfo(target + "/SystemMedia/Sound Effects").isDir());
    EXPECT_TRUE(QFileInfo(target + "/SystemMediaGen").isDir());
    const QFileInfo ffmpeg(target + "/System/ffmpeg");
    EXPECT_TRUE(ffmpeg.isSymLink());
    EXPECT_TRUE(ffmpeg.isExecutable());
}

TEST(AppFolder, AnUnwritableInstallationFallsBackToTheDataFolder) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root can write everywhere";
    test::TestAppFolder app(false);
    const QString install = app.path() + "/install";
    QDir().mkpath(install + "/System");
    ::chmod(install.toUtf8().constData(), 0555);
    const AppFolderChoice c = ChooseAppFolder({}, install, app.path() + "/fallback");
    ::chmod(install.toUtf8().constData(), 0755);
    EXPECT_EQ(c.folder, app.path() + "/fallback");
    EXPECT_TRUE(QFileInfo(app.path() + "/fallback/System").isDir());
}

TEST(CheckCommand, OnAnEmptyFolderCreatesTheFoldersAndReportsHonestly) {
    test::TestAppFolder app(false);
    const QString dir = app.path() + "/fresh";
    const StudioRun run = runStudio({"--app-dir", dir, "--check"}, app.home());
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains("gstrFFMPEGFileSpec=" + dir + "/System/ffmpeg\n"));
    EXPECT_TRUE(run.out.contains("gstrTempFilesDirectory=" + dir + "/ClipquillTempFiles\n"));
    EXPECT_TRUE(run.out.contains("gstrMyVideoDirectory=" + app.home() + "/Videos\n"));
    EXPECT_TRUE(run.out.contains(QRegularExpression("\nffmpeg: usable \\(ffmpeg version ")));
    EXPECT_TRUE(run.out.contains(QRegularExpression("\nconvert: usable \\(Version: ImageMagick")));
    EXPECT_TRUE(run.out.contains(QRegularExpression("\naudio input: (NOT )?usable")));
    EXPECT_TRUE(run.out.contains(QRegularExpression("\nspeech voice: (NOT )?usable")));
    EXPECT_TRUE(run.out.contains(QRegularExpression("\nmail hand-over: (NOT )?usable")));
    for (const char* folder : {"Temp", "ClipquillTempFiles", "SmallPics", "SystemTemp"})
        EXPECT_TRUE(QFileInfo(dir + "/" + folder).isDir()) << folder;
    EXPECT_TRUE(QFileInfo(app.home() + "/Videos/MyVideoProjects").isDir());
    EXPECT_EQ(LoadTextList(dir + "/System/TTS.txt"), DefaultTextList());
}

TEST(CheckCommand, MissingToolsFailAndNameTheirPackages) {
    test::TestAppFolder app(false);
    const QString dir = app.path() + "/fresh";
    QDir().mkpath(dir + "/System");
    QFile::link("/nonexistent/ffmpeg", dir + "/System/ffmpeg");
    QFile::link("/nonexistent/convert", dir + "/System/convert");
    // No tool on PATH either: only the folder with nothing in it.
    const StudioRun run = runStudio({"--app-dir", dir, "--check"}, app.home(), app.home());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.contains("ffmpeg: NOT usable")) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains("Debian package \"ffmpeg\""));
    EXPECT_TRUE(run.out.contains("Debian package \"imagemagick\""));
}

TEST(Startup, TemporaryFoldersOfToolsOfAKilledStudioGoThoseOfARunningOneStay) {
    test::TestAppFolder app;
    // The process number of a studio that has ended.
    QProcess ended;
    ended.start("/bin/true");
    ASSERT_TRUE(ended.waitForFinished(10000));
    const QString dead = QString::number(ended.processId());
    const QString alive = QString::number(::getpid());
    const QStringList left{"SystemMediaGen/cq-run-" + dead + "-a1b2c3/magick-XyZ",
                           "ClipquillTempFiles/cq-run-" + dead + "-d4e5f6/tmp",
                           "ClipquillTempFiles/Render2/cq-run-" + dead + "-g7h8i9/magick-1"};
    const QStringList kept{"SystemMediaGen/cq-run-" + alive + "-j1k2l3/magick-2",
                           "ClipquillTempFiles/Render2/piece 1.mpg", "SystemMediaGen/not-a-run/x"};
    for (const QString& file : left + kept)
        test::WriteFile(app.file(file), "x");
    WindowlessStartup::run(app.path(), XdgFolders::fromDesktop());
    for (const QString& file : left)
        EXPECT_FALSE(QFileInfo::exists(QFileInfo(app.file(file)).absolutePath()))
            << file.toStdString();
    for (const QString& file : kept)
        EXPECT_TRUE(QFileInfo::exists(app.file(file))) << file.toStdString();
}
