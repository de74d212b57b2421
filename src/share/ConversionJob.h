#pragma once

#include "platform/ToolRunner.h"
#include "share/ConversionCommand.h"

#include <QObject>

namespace cq {

// Runs one conversion and reports how far it has come, from ffmpeg's own report: the input's
// length, then the time reached in the output. The event loop keeps running; cancel() stops it.
class ConversionJob : public QObject {
    Q_OBJECT
public:
    explicit ConversionJob(QObject* parent = nullptr);

    bool start(const ToolCommand& command);
    RunResult waitForFinished();
    RunResult run(const ToolCommand& command);
    void cancel();
    bool isRunning() const;

signals:
    void progress(int percent); // 0..100
    void finished(const cq::RunResult& result);

private:
    void onErrorLine(const QString& line);

    ToolRunner* m_runner = nullptr;
    qint64 m_durationMs = -1;
    int m_lastPercent = -1;
};

} // namespace cq
