#include "support/LiveProcesses.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

using namespace cq;
using test::Eventually;
using test::ProcessesMentioning;

namespace {

// A render of a long video runs ffmpeg for many seconds; the studio gets a signal meanwhile.
class ToolsEndWithTheStudio : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override {
        project = app.file("project");
        QDir().mkpath(project);
        ASSERT_TRUE(
            test::MakeMedia({"-f", "lavfi", "-i", "testsrc=size=160x120:rate=10:duration=300",
                             "-c:v", "mpeg4", project + "/long.avi"}));
        ASSERT_TRUE(test::MakeMedia({"-f", "lavfi", "-i", "sine=frequency=440:sample_rate=8000",
                                     "-t", "300", "-ac", "1", "-c:a", "pcm_s16le",
                                     project + "/RecordedAudio.wav"}));
        test::WriteFile(project + "/Timeline.txt", "1\tVideo\t0.000\t\tlong.avi\r\n");
    }

    test::TestAppFolder app;
    QString project;
};

} // namespace

TEST_P(ToolsEndWithTheStudio, NoToolIsLeftTwoSecondsAfterTheSignal) {
    const int signal = GetParam();
    QProcess studio;
    studio.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    studio.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path(), "--render",
                                        project + "/Timeline.txt", "--size", "640X480"});
    ASSERT_TRUE(studio.waitForStarted(10000));
    const qint64 pid = studio.processId();
    const QByteArray folder = app.path().toUtf8();
    // The render is under way once an ffmpeg of this folder runs.
    const bool rendering =
        Eventually([&] { return !ProcessesMentioning(folder, pid, "ffmpeg").isEmpty(); }, 60000);
    ASSERT_TRUE(rendering) << "no ffmpeg started";
    ASSERT_FALSE(ProcessesMentioning(folder, pid).isEmpty());

    ASSERT_EQ(::kill(static_cast<pid_t>(pid), signal), 0);
    EXPECT_TRUE(Eventually([&] { return ProcessesMentioning(folder, pid).isEmpty(); }, 2000))
        << ProcessesMentioning(folder, pid).size() << " processes left";
    // The scan above may already have let QProcess see the end.
    ASSERT_TRUE(studio.state() == QProcess::NotRunning || studio.waitForFinished(20000));
    if (signal == SIGKILL) {
        EXPECT_EQ(studio.exitStatus(), QProcess::CrashExit);
    } else {
        // An orderly end: the destructors ran, and the shell learns which signal ended it.
        EXPECT_EQ(studio.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(studio.exitCode(), 128 + signal);
    }
}

INSTANTIATE_TEST_SUITE_P(Signals, ToolsEndWithTheStudio,
                         ::testing::Values(SIGTERM, SIGINT, SIGHUP, SIGKILL),
                         [](const ::testing::TestParamInfo<int>& info) {
                             switch (info.param) {
                             case SIGTERM:
                                 return std::string("Term");
                             case SIGINT:
                                 return std::string("Int");
                             case SIGHUP:
                                 return std::string("Hup");
                             default:
                                 return std::string("Kill");
                             }
                         });
