#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "platform/TerminationSignals.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "support/LiveProcesses.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "support/TestAudio.h"
#include "take/Recorder.h"
#include "take/RecordingController.h"
#include "take/StudioFolderLock.h"
#include "take/TakeKeeper.h"
#include "take/widgets/RecordingPanel.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/widgets/ProjectPanel.h"

#include "../app/StudioProcess.h"
#include "TakeQuestionAnswers.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>

using namespace cq;
using cq::test::restoredStudio;
using cq::test::takeFilesIn;
using cq::test::workFolderOf;

// The studio a test kills: started as a child of this test program.
TEST(TakeStudioChild, DISABLED_RecordsUntilEnded) {
    const QString mode = qEnvironmentVariable("CQ_TAKE_CHILD");
    const QString media = qEnvironmentVariable("CQ_TAKE_MEDIA");
    frmClipquill w(
        WindowlessStartup::run(qEnvironmentVariable("CQ_TAKE_APP"), XdgFolders::fromDesktop()));
    w.show();
    TimelineStudio& t = w.timeline();
    TerminationSignals endOnSignal;
    QTest::mouseClick(t.recordingPanel()->recordButton(), Qt::LeftButton);
    ASSERT_TRUE(w.timeline().controller().gblnRecording());
    auto until = [&t](qint64 ms) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return t.recorder().elapsedMs() >= ms; }, 20000));
    };
    until(300);
    t.logger().LogMediaEvent(MediaKind::Pictures, media + "/red.jpg");
    until(700);
    t.logger().LogMediaEvent(MediaKind::Pictures, media + "/blue.jpg");
    until(1200);
    t.logger().LogMediaEvent(MediaKind::Pictures, media + "/red.jpg");
    until(2000);
    if (mode == "term")
        QTest::mouseClick(t.recordingPanel()->stopButton(), Qt::LeftButton);
    std::printf("ready\n");
    std::fflush(stdout);
    // Runs as the studio does until a signal ends it (or SIGKILL, without a word).
    QApplication::exec();
}

namespace {

class KilledStudio : public ::testing::Test {
protected:
    void SetUp() override {
        REQUIRE_AUDIO();
        for (const auto& [name, color] : {std::pair{"red", Qt::red}, std::pair{"blue", Qt::blue}}) {
            QImage picture(64, 48, QImage::Format_RGB32);
            picture.fill(color);
            ASSERT_TRUE(picture.save(media.filePath(QString(name) + ".jpg")));
        }
    }

    // Runs the child studio until it has recorded three clicks (and in "term" mode pressed
    // Stop), then ends it with the signal.
    void recordAndEnd(const QString& mode, int signal) {
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("CQ_TAKE_CHILD", mode);
        env.insert("CQ_TAKE_APP", app.path());
        env.insert("CQ_TAKE_MEDIA", media.path());
        child.setProcessEnvironment(env);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
                    {"--gtest_filter=TakeStudioChild.DISABLED_RecordsUntilEnded",
                     "--gtest_also_run_disabled_tests"});
        ASSERT_TRUE(child.waitForStarted(10000));
        QByteArray out;
        const bool ready = QTest::qWaitFor(
            [&] {
                out += child.readAllStandardOutput();
                return out.contains("ready\n") || child.state() == QProcess::NotRunning;
            },
            60000);
        ASSERT_TRUE(ready && out.contains("ready\n")) << out.toStdString();
        ::kill(static_cast<pid_t>(child.processId()), signal);
        ASSERT_TRUE(child.waitForFinished(30000));
    }

    void expectTheThreeClicks(frmClipquill& w) {
        const EventGridModel& grid = w.timeline().grid();
        ASSERT_EQ(grid.rowCount(), 3);
        EXPECT_EQ(grid.row(0).file, media.filePath("red.jpg"));
        EXPECT_EQ(grid.row(1).file, media.filePath("blue.jpg"));
        EXPECT_GE(grid.row(2).atMs, 1200);
    }

    test::TestAppFolder app;
    QTemporaryDir media;
};

} // namespace

TEST_F(KilledStudio, ItsTakeComesBackWithEveryClickAndRenders) {
    recordAndEnd("kill", SIGKILL);
    auto w = restoredStudio(app);
    expectTheThreeClicks(*w);
    // At most the last second of voice may be lost.
    EXPECT_GE(w->timeline().controller().recordingLengthMs(), 1000);
    EXPECT_LE(w->timeline().controller().recordingLengthMs(), 3000);
    EXPECT_EQ(WavDurationMs(w->paths().gstrRecordedAudioFileSpec),
              w->timeline().controller().recordingLengthMs());

    const QString project = media.filePath("Restored");
    w->timeline().projectPanel()->askSaveFolder = [&] {
        return project;
    };
    w->timeline().projectPanel()->chooseFolderAndSave();
    EXPECT_FALSE(w->timeline().takeKeeper().isUnsaved());
    const QString video = media.filePath("restored.avi");
    const test::StudioRun render =
        test::RunStudioProgram({"--app-dir", app.path(), "--render", project + "/Timeline.txt",
                                "--size", "160X120", "--output", video},
                               {});
    EXPECT_EQ(render.exitCode, 0) << render.err.toStdString();
    EXPECT_GT(QFileInfo(video).size(), 0);
}

TEST_F(KilledStudio, SigtermAfterStopLeavesTheTakeForTheNextStart) {
    recordAndEnd("term", SIGTERM);
    EXPECT_EQ(takeFilesIn(workFolderOf(app)),
              QStringList({"RecordedAudio.wav", QString(kTakeJournalFileName)}));
    auto w = restoredStudio(app);
    expectTheThreeClicks(*w);
    EXPECT_GE(w->timeline().controller().recordingLengthMs(), 1900);
}

TEST(OneStudioPerFolder, ASecondStudioEndsAndLeavesTheFirstOnesFilesAlone) {
    test::TestAppFolder app;
    const QString lockFile = app.file(StudioFolderLock::kLockFileName);
    auto lockHolder = [&] {
        return ReadFileToString(lockFile).section(u'\n', 0, 0).toLongLong();
    };
    QProcess first;
    first.setProcessChannelMode(QProcess::ForwardedChannels);
    first.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path()});
    ASSERT_TRUE(first.waitForStarted(10000));
    ASSERT_TRUE(test::Eventually([&] { return lockHolder() == first.processId(); }, 30000));
    const QString voice = workFolderOf(app) + "/RecordedAudio.wav";
    QDir().mkpath(workFolderOf(app));
    WriteWholeFile("the first studio's voice", voice);

    const test::StudioRun second = test::RunStudioProgram({"--app-dir", app.path()}, {});
    EXPECT_EQ(second.exitCode, 3);
    EXPECT_TRUE(second.err.contains("in use")) << second.err.toStdString();
    EXPECT_EQ(ReadFileToBytes(voice), "the first studio's voice");
    EXPECT_EQ(first.state(), QProcess::Running);
    // A render from the command line needs no lock.
    const test::StudioRun render = test::RunStudioProgram(
        {"--app-dir", app.path(), "--render", app.file("none/Timeline.txt")}, {});
    EXPECT_EQ(render.exitCode, 2);
    EXPECT_TRUE(render.err.contains("Cannot read the timeline")) << render.err.toStdString();

    // A killed studio's lock does not keep the next one out.
    first.kill();
    ASSERT_TRUE(first.waitForFinished(10000));
    QProcess third;
    third.setProcessChannelMode(QProcess::ForwardedChannels);
    third.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path()});
    ASSERT_TRUE(third.waitForStarted(10000));
    EXPECT_TRUE(test::Eventually([&] { return lockHolder() == third.processId(); }, 30000));
    third.terminate();
    EXPECT_TRUE(third.waitForFinished(30000));
}
