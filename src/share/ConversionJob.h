#pragma once

#include "platform/ToolRunner.h"
#include "share/ConversionCommand.h"

#include <QObject>

namespace cq {

// "  Duration: 00:00:07.04, start: ..." -> 7040; -1 when the line has no duration ("N/A").
qint64 ParseFfmpegDuration(const QString& line);
// "frame=   50 fps=0.0 q=-0.0 size= 256kB time=00:00:01.23 bitrate=..." -> 1230; else -1.
qint64 ParseFfmpegTime(const QString& line);

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
