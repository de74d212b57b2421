#include "platform/ToolRunner.h"
#include "platform/ShellQuote.h"
#include "platform/TextFiles.h"
#include "support/LiveProcesses.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <functional>

using namespace cq;
using test::Eventually;

namespace {

// The live members of a process group; a zombie has ended and does not count.
QList<qint64> groupMembers(qint64 group) {
    QList<qint64> members;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        bool numeric = false;
        const qint64 pid = entry.toLongLong(&numeric);
        QFile stat("/proc/" + entry + "/stat");
        if (!numeric || !stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = stat.readAll();
        // "pid (comm) state ppid pgrp ...": comm may hold blanks, so count from the last ')'.
        const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
        if (fields.size() > 2 && fields[0] != "Z" && fields[2].toLongLong() == group)
            members << pid;
    }
    return members;
}

} // namespace

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

TEST(ToolRunner, AScriptHoldingANulIsRefusedNotCutShort) {
    QTemporaryDir dir;
    ToolRunner runner;
    // sh would read "rm -rf '/tmp/x" and stop: a quoted value must never change its meaning.
    const RunResult r =
        runner.runScript(QString("echo '/tmp/x") + QChar(u'\0') + "y'", dir.filePath("c.sh"));
    EXPECT_EQ(r.outcome, RunResult::Outcome::Failed);
    EXPECT_TRUE(r.errorText.contains("could not be written"));
    EXPECT_FALSE(runner.isRunning());
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

TEST(ToolRunner, ItsOwnSignalsMayStartTheNextRunOrDeleteIt) {
    QTemporaryDir dir;
    auto* runner = new ToolRunner;
    QPointer<ToolRunner> alive(runner);
    QStringList outputs;
    int runs = 0;
    QObject::connect(runner, &ToolRunner::finished, [&](const RunResult& r) {
        EXPECT_TRUE(r.ok());
        outputs << QString::fromUtf8(runner->standardOutput()).trimmed();
        if (++runs < 3)
            EXPECT_TRUE(
                runner->startScript(QString("echo run%1").arg(runs + 1), dir.filePath("c.sh")));
        else
            delete runner; // the process whose signal this is must outlive the delivery
    });
    ASSERT_TRUE(runner->startScript("echo run1", dir.filePath("c.sh")));
    ASSERT_TRUE(Eventually([&] { return alive.isNull(); }, 20000));
    EXPECT_EQ(outputs, QStringList({"run1", "run2", "run3"}));

    // Programs too, and from a line of output while the run is still going.
    auto* program = new ToolRunner;
    QPointer<ToolRunner> programAlive(program);
    QObject::connect(program, &ToolRunner::outputLine, [&](const QString&) { delete program; });
    ASSERT_TRUE(program->startProgram("/bin/echo", {"x"}));
    EXPECT_TRUE(Eventually([&] { return programAlive.isNull(); }, 20000));
    // Events still flow afterwards: a deletion deferred after the runners' own comes through, so
    // theirs ran without freeing anything twice.
    QPointer<QObject> last = new QObject;
    last->deleteLater();
    EXPECT_TRUE(QTest::qWaitFor([&] { return last.isNull(); }, 20000));
}

TEST(ToolRunner, NoToolOfAScriptOutlivesItsRunOrItsRunner) {
    QTemporaryDir dir;
    // A script that leaves a tool behind: the group goes when the script ends.
    ToolRunner runner;
    const RunResult r = runner.runScript("sleep 30 &\necho $$", dir.filePath("c.sh"));
    ASSERT_TRUE(r.ok()) << r.errorText.toStdString();
    const qint64 group = runner.standardOutput().trimmed().toLongLong();
    ASSERT_GT(group, 0);
    EXPECT_TRUE(Eventually([&] { return groupMembers(group).isEmpty(); }, 2000))
        << groupMembers(group).size() << " left";

    // A runner destroyed mid-run (its window closed) takes the group with it, at once.
    auto* running = new ToolRunner;
    qint64 second = 0;
    QObject::connect(running, &ToolRunner::outputLine,
                     [&](const QString& line) { second = line.toLongLong(); });
    ASSERT_TRUE(running->startScript("echo $$\nsleep 30 & sleep 30", dir.filePath("d.sh")));
    ASSERT_TRUE(Eventually([&] { return second > 0 && groupMembers(second).size() >= 2; }, 10000));
    delete running;
    EXPECT_TRUE(Eventually([&] { return groupMembers(second).isEmpty(); }, 2000))
        << groupMembers(second).size() << " left";
}
