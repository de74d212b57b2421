#pragma once

#include "platform/ToolRunner.h"
#include "share/ConversionCommand.h"

#include <QObject>

namespace cq {

// Runs one conversion in the background and reports how far it has come, from ffmpeg's own
// report: the input's length, then the time reached in the output. Exactly one of converted,
// failed or cancelled ends every started job, always from the event loop (never from inside
// start() or the process's own notification), so a listener may open a dialog or start again.
// A job that does not end with its output file leaves none behind.
class ConversionJob : public QObject {
    Q_OBJECT
public:
    explicit ConversionJob(QObject* parent = nullptr);
    // A job dropped while it runs stops ffmpeg and takes the unfinished file with it.
    ~ConversionJob() override;

    // Starts converting into outputFileSpec, which the command writes. A file already there is
    // removed first, so that an earlier result never passes for this one's. False when a job
    // is running already; a program that cannot start, or an input that is not a regular file,
    // ends the job with failed.
    bool start(const ToolCommand& command, const QString& outputFileSpec);
    // Stops ffmpeg and everything it started; the job ends with cancelled.
    void cancel();
    bool isRunning() const { return m_running; }

signals:
    void progress(int percent); // 0..100
    void converted(const QString& outputFileSpec);
    void failed(const QString& detail); // what ffmpeg said last, if anything
    void cancelled();

private:
    void onErrorLine(const QString& line);
    void onRunFinished(const RunResult& result);
    void end(const RunResult& result);

    ToolRunner* m_runner = nullptr;
    qint64 m_durationMs = -1;
    int m_lastPercent = -1;
    QString m_output;
    bool m_running = false;
    bool m_runEnded = false;
};

} // namespace cq
