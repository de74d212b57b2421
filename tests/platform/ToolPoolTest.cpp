#include "platform/ToolPool.h"
#include "platform/TextFiles.h"
#include "support/LiveProcesses.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace cq;
using test::Eventually;

namespace {

struct Outcomes {
    QList<int> started;
    QHash<int, RunResult> finished;
    QHash<int, int> finishCount;
    QHash<int, QStringList> lines;

    explicit Outcomes(ToolPool& pool) {
        QObject::connect(&pool, &ToolPool::taskStarted, [this](int id) { started << id; });
        QObject::connect(&pool, &ToolPool::taskFinished, [this](int id, const RunResult& r) {
            finished.insert(id, r);
            ++finishCount[id];
        });
        QObject::connect(&pool, &ToolPool::taskOutputLine,
                         [this](int id, const QString& line) { lines[id] << line; });
    }
    bool done(int id) const { return finished.contains(id); }
};

// A task whose tool is a shell program, given its arguments as $1, $2, ...
ToolTask Task(const QString& program, const QString& workSpace, const QStringList& inputs = {},
              const QStringList& arguments = {}) {
    ToolTask task;
    task.command = {"/bin/sh", QStringList{"-c", program, "sh"} + arguments, inputs};
    task.workSpace = workSpace;
    return task;
}

bool MakeFifo(const QString& path) {
    return ::mkfifo(QFile::encodeName(path).constData(), 0644) == 0;
}

} // namespace

TEST(ToolPool, NeverRunsMoreThanItsLimitAndStartsTasksInTheOrderTheyCameUrgentOnesFirst) {
    QTemporaryDir dir;
    const QString log = dir.filePath("log");
    const QString go = dir.filePath("go");
    ToolPool pool(2);
    Outcomes out(pool);
    auto waiting = [&](bool urgent) {
        ToolTask task = Task("echo start >> \"$1\"\n"
                             "while [ ! -e \"$2\" ]; do sleep 0.02; done\n"
                             "echo end >> \"$1\"",
                             dir.path(), {}, {log, go});
        task.urgent = urgent;
        return task;
    };
    QList<int> ids;
    for (int i = 0; i < 6; ++i)
        ids << pool.submit(waiting(false));
    EXPECT_TRUE(out.started.isEmpty()) << "nothing is reported from inside submit";
    EXPECT_TRUE(pool.isBusy());
    // Two tasks hold the slots until they are let go; the others wait, and urgent tasks that
    // come now go ahead of them, in their own order.
    ASSERT_TRUE(Eventually([&] { return ReadFileToString(log).count("start") == 2; }, 10000));
    const int urgent1 = pool.submit(waiting(true));
    const int urgent2 = pool.submit(waiting(true));
    ids.insert(2, urgent2);
    ids.insert(2, urgent1);
    ASSERT_TRUE(SaveTextToFile("", go));
    ASSERT_TRUE(Eventually([&] { return out.finished.size() == 8; }, 30000));

    // Each task wrote "start" and "end" while it ran; the pool starts one only after another
    // has ended, so the log shows how many ran at once.
    int runningNow = 0;
    int most = 0;
    for (const QString& line : ReadFileToString(log).split('\n', Qt::SkipEmptyParts)) {
        runningNow += line.trimmed() == "start" ? 1 : -1;
        most = std::max(most, runningNow);
    }
    EXPECT_EQ(most, 2);
    EXPECT_EQ(out.started, ids);
    for (int id : ids) {
        EXPECT_TRUE(out.finished.value(id).ok()) << out.finished.value(id).errorText.toStdString();
        EXPECT_EQ(out.finishCount.value(id), 1);
    }
    EXPECT_FALSE(pool.isBusy());
}

TEST(ToolPool, NoToolIsHandedADeviceAFifoOrAFolder) {
    QTemporaryDir dir;
    const QString picture = dir.filePath("it's $(touch x) a \"picture\".jpg");
    ASSERT_TRUE(SaveTextToFile("data", picture));
    ASSERT_TRUE(QFile::link(picture, dir.filePath("link to picture.jpg")));
    ASSERT_TRUE(MakeFifo(dir.filePath("fifo.jpg")));
    ASSERT_TRUE(QFile::link("/dev/zero", dir.filePath("zero.jpg")));
    ASSERT_TRUE(QFile::link(dir.filePath("fifo.jpg"), dir.filePath("link to fifo.jpg")));
    ASSERT_TRUE(QDir(dir.path()).mkdir("folder.jpg"));
    ASSERT_TRUE(QFile::link(dir.filePath("gone"), dir.filePath("dangling.jpg")));
    const QList<QPair<QString, QString>> refused{{"fifo.jpg", "a FIFO"},
                                                 {"zero.jpg", "a device"},
                                                 {"link to fifo.jpg", "a FIFO"},
                                                 {"folder.jpg", "a folder"},
                                                 {"dangling.jpg", "a link that leads nowhere"},
                                                 {"missing.jpg", "missing"}};
    ToolPool pool(2);
    Outcomes out(pool);
    QHash<int, QPair<QString, QString>> expected;
    for (const auto& [name, kind] : refused) {
        const QString ran = dir.filePath("ran " + name);
        const int id =
            pool.submit(Task("touch \"$1\"", dir.path(), {picture, dir.filePath(name)}, {ran}));
        expected.insert(id, {name, kind});
    }
    const int fine = pool.submit(Task("cat \"$1\" >/dev/null", dir.path(),
                                      {picture, dir.filePath("link to picture.jpg")}, {picture}));
    ASSERT_TRUE(Eventually([&] { return out.finished.size() == refused.size() + 1; }, 20000));
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        const RunResult r = out.finished.value(it.key());
        EXPECT_EQ(r.outcome, RunResult::Outcome::Failed) << it->first.toStdString();
        EXPECT_TRUE(r.errorText.contains(dir.filePath(it->first)) &&
                    r.errorText.contains(it->second))
            << r.errorText.toStdString();
        EXPECT_FALSE(QFileInfo::exists(dir.filePath("ran " + it->first)));
        EXPECT_FALSE(out.started.contains(it.key()));
    }
    EXPECT_TRUE(out.finished.value(fine).ok()) << out.finished.value(fine).errorText.toStdString();

    // A file swapped for a FIFO while its task waited for a slot is refused when its turn comes.
    const QString go = dir.filePath("go");
    const QString later = dir.filePath("later.jpg");
    ASSERT_TRUE(SaveTextToFile("data", later));
    ToolPool one(1);
    Outcomes queued(one);
    one.submit(Task("while [ ! -e \"$1\" ]; do sleep 0.02; done", dir.path(), {}, {go}));
    const int swapped = one.submit(Task("cat \"$1\"", dir.path(), {later}, {later}));
    ASSERT_TRUE(Eventually([&] { return queued.started.size() == 1; }, 10000));
    ASSERT_TRUE(QFile::remove(later) && MakeFifo(later));
    ASSERT_TRUE(SaveTextToFile("", go));
    ASSERT_TRUE(Eventually([&] { return queued.done(swapped); }, 20000));
    EXPECT_EQ(queued.finished.value(swapped).outcome, RunResult::Outcome::Failed);
    EXPECT_TRUE(queued.finished.value(swapped).errorText.contains("a FIFO"));
    EXPECT_FALSE(queued.started.contains(swapped));
}

TEST(ToolPool, EachRunHasATemporaryFolderOfItsOwnThatGoesWithTheRunHoweverItEnds) {
    QTemporaryDir dir;
    const QString work = dir.filePath("Render 1"); // made by the pool when missing
    // The tool checks its own surroundings; mktemp stands for any tool that obeys TMPDIR.
    const QString probe = "[ -d \"$TMPDIR\" ] && [ \"$TMPDIR\" = \"$MAGICK_TEMPORARY_PATH\" ] && "
                          "echo \"$TMPDIR\" && mktemp && echo ready\n";
    auto pool = std::make_unique<ToolPool>(4);
    Outcomes out(*pool);
    const int success = pool->submit(Task(probe + "exit 0", work));
    const int failure = pool->submit(Task(probe + "exit 3", work));
    const int cancelled = pool->submit(Task(probe + "sleep 30", work));
    const int destroyed = pool->submit(Task(probe + "sleep 30", work));
    auto ready = [&](int id) {
        return out.lines.value(id).contains("ready");
    };
    ASSERT_TRUE(Eventually([&] { return ready(cancelled) && ready(destroyed); }, 20000))
        << out.lines.value(cancelled).join('|').toStdString();
    pool->cancel(cancelled);
    ASSERT_TRUE(Eventually(
        [&] { return out.done(success) && out.done(failure) && out.done(cancelled); }, 20000));
    EXPECT_TRUE(out.finished.value(success).ok());
    EXPECT_EQ(out.finished.value(failure).exitCode, 3);
    EXPECT_TRUE(out.finished.value(cancelled).cancelled());
    pool.reset(); // the window closed during a run

    QStringList folders;
    for (int id : {success, failure, cancelled, destroyed}) {
        const QStringList lines = out.lines.value(id);
        ASSERT_EQ(lines.size(), 3) << lines.join('|').toStdString();
        EXPECT_EQ(QFileInfo(lines[0]).absolutePath(), work);
        EXPECT_TRUE(lines[1].startsWith(lines[0] + '/')) << lines[1].toStdString();
        folders << lines[0];
    }
    folders.removeDuplicates();
    EXPECT_EQ(folders.size(), 4);
    EXPECT_TRUE(Eventually(
        [&] { return QDir(work).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot); },
        5000))
        << QDir(work).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).join('|').toStdString();
}

TEST(ToolPool, CancelDropsAQueuedTaskAndStopsARunningOneAndATimeLimitStopsAStuckOne) {
    QTemporaryDir dir;
    ToolPool pool(1);
    Outcomes out(pool);
    const QString ranDropped = dir.filePath("dropped ran");
    const int running = pool.submit(Task("echo up\nsleep 30", dir.path()));
    const int dropped = pool.submit(Task("touch \"$1\"", dir.path(), {}, {ranDropped}));
    const int last = pool.submit(Task("echo last", dir.path()));
    ASSERT_TRUE(Eventually([&] { return out.lines.value(running).contains("up"); }, 10000));
    pool.cancel(dropped);
    EXPECT_FALSE(out.done(dropped)) << "reported after cancel returns";
    QElapsedTimer clock;
    clock.start();
    pool.cancel(running);
    ASSERT_TRUE(Eventually([&] { return out.done(last); }, 20000));
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_TRUE(out.finished.value(dropped).cancelled());
    EXPECT_TRUE(out.finished.value(running).cancelled());
    EXPECT_EQ(out.lines.value(last), QStringList{"last"});
    EXPECT_EQ(out.started, QList<int>({running, last}));
    EXPECT_FALSE(QFileInfo::exists(ranDropped));
    pool.cancel(last); // over already: nothing happens
    pool.cancel(12345);
    EXPECT_EQ(out.finishCount.value(last), 1);

    ToolTask stuck = Task("sleep 30", dir.path());
    stuck.timeoutMs = 300;
    clock.restart();
    const int timedOut = pool.submit(stuck);
    ASSERT_TRUE(Eventually([&] { return out.done(timedOut); }, 20000));
    EXPECT_EQ(out.finished.value(timedOut).outcome, RunResult::Outcome::Failed);
    EXPECT_TRUE(out.finished.value(timedOut).errorText.contains("did not finish"));
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST(ToolPool, ItsHandlersMaySubmitMoreOrDeleteThePool) {
    QTemporaryDir dir;
    auto* pool = new ToolPool(2);
    QPointer<ToolPool> alive(pool);
    QList<int> order;
    // An odd length marks the one sleep of this test among the processes.
    pool->submit(Task("sleep 31.4159", dir.filePath("work")));
    QObject::connect(pool, &ToolPool::taskFinished, [&](int id, const RunResult& r) {
        EXPECT_TRUE(r.ok()) << r.errorText.toStdString();
        order << id;
        if (order.size() < 3)
            pool->submit(Task("true", dir.filePath("work")));
        else
            delete pool;
    });
    pool->submit(Task("true", dir.filePath("work")));
    ASSERT_TRUE(Eventually([&] { return alive.isNull(); }, 20000));
    EXPECT_EQ(order.size(), 3);
    // The task still running went with the pool, and so did its folder.
    EXPECT_TRUE(Eventually([&] { return test::ProcessesMentioning("31.4159").isEmpty(); }, 5000));
    EXPECT_TRUE(Eventually([&] { return QDir(dir.filePath("work")).isEmpty(); }, 5000));
}
