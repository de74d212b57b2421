#pragma once

#include "platform/Job.h"
#include "platform/ToolRunner.h"
#include "share/ConversionCommand.h"

namespace cq {

// Runs one conversion in the background and reports how far it has come, from ffmpeg's own
// report: the input's length, then the time reached in the output. Every started job ends from
// the event loop (never from inside start() or the process's own notification), so a listener
// may open a dialog or start again. Done, its output file is there; failed, the message is what
// ffmpeg said last, if anything. A job that does not end done leaves no output file behind.
class ConversionJob : public Job {
    Q_OBJECT
public:
    explicit ConversionJob(QObject* parent = nullptr);
    // A job dropped while it runs stops ffmpeg and takes the unfinished file with it.
    ~ConversionJob() override;

    // Starts converting into outputFileSpec, which the command writes. A file already there is
    // removed first, so that an earlier result never passes for this one's. False when a job
    // is running already; a program that cannot start, or an input that is not a regular file,
    // ends the job failed.
    bool start(const ToolCommand& command, const QString& outputFileSpec);
    // Stops ffmpeg and everything it started; the job ends cancelled.
    void cancel() override;
    bool isRunning() const override { return m_running; }
    // The file of the last start, there once the job has ended done.
    QString output() const { return m_output; }

private:
    void onErrorLine(const QString& line);
    void onRunFinished(const RunResult& result);
    void finish(const RunResult& result);

    ToolRunner* m_runner = nullptr;
    qint64 m_durationMs = -1;
    QString m_output;
    bool m_running = false;
    bool m_runEnded = false;
};

} // namespace cq
