#include "platform/ToolRunner.h"
#include "platform/ShellQuote.h"
#include "platform/TextFiles.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

using namespace cq;

TEST(ToolRunner, HostileFileNamesPassThroughShUntouched) {
    QTemporaryDir dir;
    // A name cannot hold "/", so an injected command would make its file in the working folder.
    const QStringList names{"it's here.txt",
                            "double \"quote\".txt",
                            "$(touch INJECTED).txt",
                            "`touch INJECTED`.txt",
                            "semi; touch INJECTED;.txt",
                            "back\\slash.txt",
                            QString::fromUtf8("Zoë Vidéo ünïcode.txt"),
                            "new\nline.txt",
                            "$HOME and * glob.txt"};
    QString script;
    for (const QString& name : names) {
        const QString from = dir.filePath("src-" + name);
        ASSERT_TRUE(SaveTextToFile(name, from));
        script += ShellCommandLine({"/bin/cp", from, dir.filePath("dst-" + name)}) + "\n";
    }
    ToolRunner runner;
    const RunResult r = runner.runScript(script, dir.filePath("c.sh"));
    EXPECT_TRUE(r.ok()) << r.errorText.toStdString();
    EXPECT_FALSE(QFileInfo::exists("INJECTED"));
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("INJECTED")));
    for (const QString& name : names)
        EXPECT_EQ(ReadFileToString(dir.filePath("dst-" + name)), name + "\r\n")
            << name.toStdString();
}

TEST(ToolRunner, ScriptIsWrittenWithLfLineEndsReplacingTheOldOne) {
    QTemporaryDir dir;
    ToolRunner runner;
    runner.runScript("true\r\ntrue\r\ntrue\r\n", dir.filePath("c.sh"));
    runner.runScript("true\r\necho hi", dir.filePath("c.sh"));
    EXPECT_EQ(ReadFileToBytes(dir.filePath("c.sh")), "true\necho hi\n");
}

TEST(ToolRunner, ReportsExitStatusAndCapturedErrorText) {
    QTemporaryDir dir;
    ToolRunner runner;
    QStringList lines;
    QObject::connect(&runner, &ToolRunner::errorLine, [&](const QString& l) { lines << l; });
    const RunResult r = runner.runScript("echo first >&2\nprintf 'time=1\\rtime=2' >&2\nexit 3",
                                         dir.filePath("c.sh"));
    EXPECT_EQ(r.outcome, RunResult::Outcome::Failed);
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_TRUE(r.errorText.contains("first"));
    EXPECT_EQ(lines, QStringList({"first", "time=1", "time=2"}));
}

TEST(ToolRunner, CancelStopsTheWholeGroupWithinSeconds) {
    QTemporaryDir dir;
    ToolRunner runner;
    // The shell ignores SIGTERM; its child sleeps. The group must still go.
    ASSERT_TRUE(
        runner.startScript("trap '' TERM\nsleep 60 & wait\nsleep 60", dir.filePath("c.sh")));
    QSignalSpy finished(&runner, &ToolRunner::finished);
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(200, [&] { runner.cancel(); });
    const RunResult r = runner.waitForFinished();
    EXPECT_TRUE(r.cancelled());
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_EQ(finished.count(), 1);
    EXPECT_FALSE(runner.isRunning());
}

TEST(ToolRunner, AProgramThatDoesNotExistFailsWithAReason) {
    ToolRunner runner;
    const RunResult r = runner.runProgram("/no/such/tool", {"-version"});
    EXPECT_EQ(r.outcome, RunResult::Outcome::Failed);
    EXPECT_TRUE(r.errorText.contains("/no/such/tool"));
    EXPECT_FALSE(runner.isRunning());
}
