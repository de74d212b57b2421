#include "StudioProcess.h"
#include "platform/Folders.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace cq;

namespace {

// `clipquill --render` of a project on an application folder of its own; without HOME when asked.
class CommandLineOutput : public ::testing::Test {
protected:
    CommandLineOutput() {
        QDir().mkpath(file("project"));
        EXPECT_TRUE(WriteWholeFile(WavHeader(8000, 1, 16, 16000) + QByteArray(16000, '\1'),
                                   file("project/RecordedAudio.wav")));
        EXPECT_TRUE(WriteWholeFile("a 5 s video", file("project/clip.avi")));
        EXPECT_TRUE(WriteWholeFile("1\tVideo\t0.000\t\tclip.avi\r\n", timeline()));
        EXPECT_TRUE(QFile::link(file("project"), file("link")));
    }

    QString file(const QString& relative) const { return app.file(relative); }
    QString timeline() const { return file("project/Timeline.txt"); }

    test::StudioRun render(const QStringList& extra, bool withHome = true) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (!withHome)
            for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
                env.remove(name);
        p.setProcessEnvironment(env);
        p.start(CQ_STUDIO_EXECUTABLE,
                QStringList{"--app-dir", file("app"), "--render", timeline()} + extra);
        EXPECT_TRUE(p.waitForFinished(120000));
        return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
                QString::fromUtf8(p.readAllStandardError())};
    }

    // Refused with exit code 2, naming the file, before any work folder was made.
    void expectRefused(const QStringList& extra, const QString& named) {
        const test::StudioRun run = render(extra);
        EXPECT_EQ(run.exitCode, 2) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(named)) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
        EXPECT_FALSE(QFileInfo::exists(file("app/ClipquillTempFiles/Render1")));
    }

    test::TestAppFolder app{false};
};

} // namespace

TEST_F(CommandLineOutput, AResultOverAnInputOrAProtectedFileIsRefusedBeforeAnythingRuns) {
    for (const char* input : {"project/clip.avi", "link/clip.avi"})
        expectRefused({"--output", file(input)}, "clip.avi");
    EXPECT_EQ(ReadFileToBytes(file("project/clip.avi")), "a 5 s video");

    const QString kept = file("kept.mp4");
    ASSERT_TRUE(WriteWholeFile("kept", kept));
    ASSERT_EQ(::chmod(QFile::encodeName(kept).constData(), 0444), 0);
    expectRefused({"--output", kept}, "\"" + kept + "\" is write-protected");
    EXPECT_EQ(ReadFileToBytes(kept), "kept");

    expectRefused({"--output", "/proc/clipquill-none/Result.avi"},
                  "The result \"/proc/clipquill-none/Result.avi\" cannot be written");
}

// Through a link to the project, the result's subtitle files would land on its own captions.
TEST_F(CommandLineOutput, TheProjectsCaptionsAreGuardedThroughALinkToo) {
    const QByteArray corrected("1\n00:00:00,000 --> 00:00:01,000\nCorrected\n");
    ASSERT_TRUE(WriteWholeFile(corrected, file("project/Captions.srt")));
    expectRefused({"--output", file("link/Captions.mp4")}, "Captions.srt");
    EXPECT_EQ(ReadFileToBytes(file("project/Captions.srt")), corrected);
}

TEST(HomeFolder, TheAccountsHomeStandsInForAMissingHome) {
    const QByteArray home = qgetenv("HOME");
    qunsetenv("HOME");
    TakeHomeFromAccountWhenUnset();
    const QString taken = qEnvironmentVariable("HOME");
    const QString movies = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    qputenv("HOME", home);
    const passwd* account = ::getpwuid(::getuid());
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(taken, QString::fromLocal8Bit(account->pw_dir));
    EXPECT_TRUE(movies.startsWith(taken)) << movies.toStdString();

    qputenv("HOME", "/somewhere/else");
    TakeHomeFromAccountWhenUnset();
    EXPECT_EQ(qgetenv("HOME"), "/somewhere/else") << "a HOME that is set is kept";
    qputenv("HOME", home);
}

// A render writes its result and its work files; it makes no projects folder under the user's
// videos, least of all at the root when HOME is unset.
TEST_F(CommandLineOutput, ARenderWithoutHomeMakesNoFolderItDoesNotWriteInto) {
    ASSERT_TRUE(test::MakeMedia({"-f", "lavfi", "-i", "color=red:size=160x120", "-frames:v", "1",
                                 file("project/red.jpg")}));
    ASSERT_TRUE(WriteWholeFile("1\tPictures\t0.000\t\tred.jpg\r\n", timeline()));
    const passwd* account = ::getpwuid(::getuid());
    ASSERT_NE(account, nullptr);
    const QString accountVideos = QString::fromLocal8Bit(account->pw_dir) + "/Videos";
    const bool hadVideos = QFileInfo::exists(accountVideos);
    const bool hadRootVideos = QFileInfo::exists("/Videos");

    const test::StudioRun run =
        render({"--size", "160X120", "--raw-voice", "--output", file("out/r.avi")}, false);
    const bool madeRootVideos = !hadRootVideos && QFileInfo::exists("/Videos");
    const bool madeVideos = !hadVideos && QFileInfo::exists(accountVideos);
    // What a failing run made is taken away again: only empty folders, which nobody else made.
    if (madeRootVideos)
        QDir("/Videos").removeRecursively();
    if (madeVideos)
        QDir(accountVideos).removeRecursively();
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(QFileInfo(file("out/r.avi")).isFile());
    EXPECT_FALSE(madeRootVideos);
    EXPECT_FALSE(madeVideos);
    for (const char* folder : {"Temp", "SmallPics", "SystemTemp"})
        EXPECT_FALSE(QFileInfo::exists(file("app/") + folder)) << folder;
}
