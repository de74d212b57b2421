#include "share/ConversionJob.h"

#include "platform/FfmpegOutput.h"

namespace cq {

ConversionJob::ConversionJob(QObject* parent) : QObject(parent), m_runner(new ToolRunner(this)) {
    connect(m_runner, &ToolRunner::errorLine, this, &ConversionJob::onErrorLine);
    connect(m_runner, &ToolRunner::finished, this, [this](const RunResult& result) {
        if (result.ok())
            emit progress(100);
        emit finished(result);
    });
}

bool ConversionJob::start(const ToolCommand& command) {
    m_durationMs = -1;
    m_lastPercent = -1;
    emit progress(0);
    return m_runner->startProgram(command.program, command.arguments);
}

RunResult ConversionJob::waitForFinished() {
    return m_runner->waitForFinished();
}

RunResult ConversionJob::run(const ToolCommand& command) {
    if (!start(command))
        return m_runner->lastResult();
    return waitForFinished();
}

void ConversionJob::cancel() {
    m_runner->cancel();
}

bool ConversionJob::isRunning() const {
    return m_runner->isRunning();
}

void ConversionJob::onErrorLine(const QString& line) {
    // Only the first duration is the input's; later ones belong to the output's description.
    if (m_durationMs < 0) {
        const qint64 duration = FfmpegDurationMs(line);
        if (duration > 0)
            m_durationMs = duration;
        return;
    }
    const qint64 reached = FfmpegProgressMs(line);
    if (reached < 0)
        return;
    const int percent = int(qBound<qint64>(qint64(0), reached * 100 / m_durationMs, qint64(99)));
    if (percent != m_lastPercent) {
        m_lastPercent = percent;
        emit progress(percent);
    }
}

} // namespace cq
