#pragma once

#include "platform/ToolRunner.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>

namespace cq {

struct ToolTask {
    ToolCommand command;    // its inputFiles must be regular files after following links, else
                            // the task fails at once (RunResult Failed, errorText names the file
                            // and what it is) without running anything
    QString workSpace;      // the folder of the job the task belongs to; the run gets a private
                            // temporary folder inside it (TMPDIR, MAGICK_TEMPORARY_PATH point
                            // there) that is removed when the run ends, however it ends
    int timeoutMs = 0;      // 0: none; else the run is stopped after this long and fails
    bool urgent = false;    // starts before every queued task that is not: a short step that
                            // others wait for
};

// The one queue through which batches of tool runs go (thumbnails, the render's pieces): it
// limits how many tools run at once across all of them, starts tasks in the order they came
// (urgent ones first), and is where files meet tools: a tool is handed regular files only. Each
// task runs through a ToolRunner of its own, so every guarantee of the runner holds.
//
// Every signal is delivered after submit() returns; taskFinished comes exactly once per task.
// Handlers may submit, cancel, or delete the pool.
class ToolPool : public QObject {
    Q_OBJECT
public:
    explicit ToolPool(int maxRunning = QThread::idealThreadCount(), QObject* parent = nullptr);
    ~ToolPool() override;

    int submit(const ToolTask& task); // a task id (> 0); queued until a slot is free (FIFO,
                                      // urgent tasks ahead of the others)
    void cancel(int id);              // queued: dropped; running: its group is stopped;
                                      // taskFinished still comes, with a Cancelled result
    bool isBusy() const;              // anything queued, running or still to be reported
    int maxRunning() const { return m_maxRunning; }

signals:
    void taskStarted(int id);
    void taskOutputLine(int id, const QString& line);       // stdout lines of the run
    void taskFinished(int id, const cq::RunResult& result); // exactly once per submitted task

private:
    struct Queued {
        int id = 0;
        ToolTask task;
    };
    struct Running {
        ToolRunner* runner = nullptr;
        bool timedOut = false;
        int timeoutMs = 0;
    };

    void schedulePump();
    void pump();
    bool startTask(const Queued& queued);
    void onRunnerFinished(int id, RunResult result);
    // Reports a task that never ran, after the current call has returned.
    void reportLater(int id, const RunResult& result);
    void deliverReports();

    int m_maxRunning;
    int m_nextId = 1;
    bool m_pumpScheduled = false;
    bool m_reportsScheduled = false;
    QList<Queued> m_queue;
    QHash<int, Running> m_running;
    QList<QPair<int, RunResult>> m_reports;
};

} // namespace cq
