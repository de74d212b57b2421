#include "platform/ToolRunner.h"
#include "platform/TextFiles.h"
#include "support/LiveProcesses.h"

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

// A shell program run as the tool: what the studio's tools do, written in a line.
ToolCommand Sh(const QString& program, const QStringList& arguments = {}) {
    return {"/bin/sh", QStringList{"-c", program, "sh"} + arguments};
}

const QStringList kHostileNames{"it's here.txt",
                                "double \"quote\".txt",
                                "$(touch INJECTED).txt",
                                "`touch INJECTED`.txt",
                                "semi; touch INJECTED;.txt",
                                "back\\slash.txt",
                                QString::fromUtf8("Zo\u00eb Vid\u00e9o \u00fcn\u00efcode.txt"),
                                "new\nline.txt",
                                "-starts like an option.txt",
                                "$HOME and * glob.txt"};

} // namespace

TEST(ToolRunner, HostileFileNamesReachTheToolAsTheyAreAndReadBackFromTheLoggedLine) {
    QTemporaryDir dir;
    ToolRunner runner;
    // A name cannot hold "/", so an injected command would make its file in the working folder.
    for (const QString& name : kHostileNames) {
        const QString from = dir.filePath("src-" + name);
        ASSERT_TRUE(SaveTextToFile(name, from));
        const RunResult r = runner.run({"/bin/cp", {from, dir.filePath("dst-" + name)}, {from}});
        EXPECT_TRUE(r.ok()) << r.errorText.toStdString();
        EXPECT_EQ(ReadFileToString(dir.filePath("dst-" + name)), name + "\r\n")
            << name.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists("INJECTED"));
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("INJECTED")));

    // The line in the log, pasted into a shell, hands the program the very same words.
    const ToolCommand logged{"printf", QStringList{"<%s>"} + kHostileNames};
    const RunResult pasted = runner.run(Sh(logged.commandLine()));
    ASSERT_TRUE(pasted.ok()) << pasted.errorText.toStdString();
    EXPECT_EQ(QString::fromUtf8(runner.standardOutput()), "<" + kHostileNames.join("><") + ">");
    EXPECT_FALSE(QFileInfo::exists("INJECTED"));
}

TEST(ToolRunner, ReadsItsInputFileAndKeepsItsOutputOnlyWhenItEndsWell) {
    QTemporaryDir dir;
    const QString input = dir.filePath("in; $(x).txt");
    ASSERT_TRUE(SaveTextToFile("picture", input));
    const QString kept = dir.filePath("kept.txt");
    ASSERT_TRUE(SaveTextToFile("older", kept));
    ToolRunner runner;
    runner.setTemporaryFolderIn(dir.filePath("work"));
    ToolCommand copy = Sh("cat > made.txt; exit $1", {"0"});
    copy.standardInputFile = input;
    copy.keptOutputs = {{"made.txt", kept}};
    EXPECT_TRUE(runner.run(copy).ok());
    EXPECT_EQ(ReadFileToString(kept), "picture\r\n");

    // A run that fails leaves the older file as it was, and nothing in the work space.
    ASSERT_TRUE(SaveTextToFile("older", kept));
    copy.arguments.last() = "1";
    EXPECT_FALSE(runner.run(copy).ok());
    EXPECT_EQ(ReadFileToString(kept), "older\r\n");
    EXPECT_TRUE(Eventually([&] { return QDir(dir.filePath("work")).isEmpty(); }, 5000));

    // Made by a run that ended well but cannot be put in place: the run failed.
    copy.arguments.last() = "0";
    copy.keptOutputs = {{"made.txt", dir.filePath("no folder/kept.txt")}};
    const RunResult unmoved = runner.run(copy);
    EXPECT_EQ(unmoved.outcome, RunResult::Outcome::Failed);
    EXPECT_TRUE(unmoved.errorText.contains("could not be moved"))
        << unmoved.errorText.toStdString();
}

TEST(ToolRunner, ReportsExitStatusAndCapturedErrorText) {
    ToolRunner runner;
    QStringList lines;
    QObject::connect(&runner, &ToolRunner::errorLine, [&](const QString& l) { lines << l; });
    const RunResult r = runner.run(Sh("echo first >&2\nprintf 'time=1\\rtime=2' >&2\nexit 3"));
    EXPECT_EQ(r.outcome, RunResult::Outcome::Failed);
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_TRUE(r.errorText.contains("first"));
    EXPECT_EQ(lines, QStringList({"first", "time=1", "time=2"}));
}

TEST(ToolRunner, CancelStopsTheWholeGroupWithinSeconds) {
    ToolRunner runner;
    // The tool ignores SIGTERM; its child sleeps. The group must still go.
    ASSERT_TRUE(runner.start(Sh("trap '' TERM\nsleep 60 & wait\nsleep 60")));
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
    auto* runner = new ToolRunner;
    QPointer<ToolRunner> alive(runner);
    QStringList outputs;
    int runs = 0;
    QObject::connect(runner, &ToolRunner::finished, [&](const RunResult& r) {
        EXPECT_TRUE(r.ok());
        outputs << QString::fromUtf8(runner->standardOutput()).trimmed();
        if (++runs < 3)
            EXPECT_TRUE(runner->start(Sh(QString("echo run%1").arg(runs + 1))));
        else
            delete runner; // the process whose signal this is must outlive the delivery
    });
    ASSERT_TRUE(runner->start(Sh("echo run1")));
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

TEST(ToolRunner, NothingAToolStartedOutlivesItsRunOrItsRunner) {
    // A tool that leaves a process behind: the group goes when the tool ends.
    ToolRunner runner;
    const RunResult r = runner.run(Sh("sleep 30 &\necho $$"));
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
    ASSERT_TRUE(running->start(Sh("echo $$\nsleep 30 & sleep 30")));
    ASSERT_TRUE(Eventually([&] { return second > 0 && groupMembers(second).size() >= 2; }, 10000));
    delete running;
    EXPECT_TRUE(Eventually([&] { return groupMembers(second).isEmpty(); }, 2000))
        << groupMembers(second).size() << " left";
}

// The parent-death signal follows the thread that started a tool: a tool started from a thread
// that then ends would be killed with it, in the middle of its work.
TEST(ToolRunner, NoToolIsStartedFromAThreadThatMayEndBeforeIt) {
    RunResult result;
    QThread* passing = QThread::create([&] {
        ToolRunner runner;
        result = runner.run({"/bin/true", {}});
    });
    passing->start();
    ASSERT_TRUE(passing->wait(QDeadlineTimer(20000)));
    delete passing;
    EXPECT_EQ(result.outcome, RunResult::Outcome::Failed);
    EXPECT_TRUE(result.errorText.contains("main thread")) << result.errorText.toStdString();
}
