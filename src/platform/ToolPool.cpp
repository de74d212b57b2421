#include "platform/ToolPool.h"

#include <QDir>
#include <QMetaObject>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace cq {

ToolPool::ToolPool(int maxRunning, QObject* parent)
    : QObject(parent), m_maxRunning(std::max(1, maxRunning)) {
    qRegisterMetaType<cq::RunResult>();
}

ToolPool::~ToolPool() {
    // The runners are children: their groups and temporary folders go with them. Nothing is
    // reported any more.
    for (const Running& running : std::as_const(m_running))
        running.runner->disconnect(this);
}

int ToolPool::submit(const ToolTask& task) {
    const int id = m_nextId++;
    const QString problem = task.command.inputProblem();
    if (!problem.isEmpty()) {
        reportLater(id, {RunResult::Outcome::Failed, -1, problem});
        return id;
    }
    // An urgent task goes behind the urgent ones already queued, ahead of every other.
    const auto at = task.urgent ? std::find_if(m_queue.begin(), m_queue.end(),
                                               [](const Queued& q) { return !q.task.urgent; })
                                : m_queue.end();
    m_queue.insert(at, {id, task});
    schedulePump();
    return id;
}

void ToolPool::cancel(int id) {
    const auto queued =
        std::find_if(m_queue.begin(), m_queue.end(), [id](const Queued& q) { return q.id == id; });
    if (queued != m_queue.end()) {
        m_queue.erase(queued);
        reportLater(id, {RunResult::Outcome::Cancelled, -1, QString()});
        return;
    }
    const auto running = m_running.constFind(id);
    if (running != m_running.constEnd())
        running->runner->cancel();
}

bool ToolPool::isBusy() const {
    return !m_queue.isEmpty() || !m_running.isEmpty() || !m_reports.isEmpty();
}

void ToolPool::schedulePump() {
    if (m_pumpScheduled)
        return;
    m_pumpScheduled = true;
    QMetaObject::invokeMethod(this, &ToolPool::pump, Qt::QueuedConnection);
}

void ToolPool::pump() {
    m_pumpScheduled = false;
    QPointer<ToolPool> self(this);
    while (self && !m_queue.isEmpty() && m_running.size() < m_maxRunning) {
        const Queued next = m_queue.takeFirst();
        // The runner checks the inputs again as it starts (a file may have been swapped while
        // the task waited) and reports a refusal through its end.
        if (startTask(next) && self)
            emit taskStarted(next.id);
    }
}

bool ToolPool::startTask(const Queued& queued) {
    const int id = queued.id;
    auto* runner = new ToolRunner(this);
    runner->setTemporaryFolderIn(queued.task.workSpace.isEmpty() ? QDir::tempPath()
                                                                 : queued.task.workSpace);
    connect(runner, &ToolRunner::outputLine, this,
            [this, id](const QString& line) { emit taskOutputLine(id, line); });
    connect(runner, &ToolRunner::finished, this,
            [this, id](const RunResult& result) { onRunnerFinished(id, result); });
    m_running.insert(id, {runner, false, queued.task.timeoutMs});
    if (queued.task.timeoutMs > 0) {
        auto* timer = new QTimer(runner);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this, id] {
            const auto running = m_running.find(id);
            if (running == m_running.end())
                return;
            running->timedOut = true;
            running->runner->cancel();
        });
        timer->start(queued.task.timeoutMs);
    }
    // A command that cannot start has reported its end from inside start.
    return runner->start(queued.task.command);
}

void ToolPool::onRunnerFinished(int id, RunResult result) {
    const auto running = m_running.find(id);
    if (running == m_running.end())
        return;
    if (running->timedOut) {
        result.outcome = RunResult::Outcome::Failed;
        result.errorText = QStringLiteral("The tool did not finish within %1 s and was stopped.\n")
                               .arg((running->timeoutMs + 999) / 1000) +
                           result.errorText;
    }
    running->runner->disconnect(this);
    running->runner->deleteLater();
    m_running.erase(running);
    schedulePump();
    emit taskFinished(id, result);
}

void ToolPool::reportLater(int id, const RunResult& result) {
    m_reports.append({id, result});
    if (m_reportsScheduled)
        return;
    m_reportsScheduled = true;
    QMetaObject::invokeMethod(this, &ToolPool::deliverReports, Qt::QueuedConnection);
}

void ToolPool::deliverReports() {
    m_reportsScheduled = false;
    QPointer<ToolPool> self(this);
    while (self && !m_reports.isEmpty()) {
        const auto [id, result] = m_reports.takeFirst();
        emit taskFinished(id, result);
    }
}

} // namespace cq
