#include "share/ConversionJob.h"

#include "platform/FfmpegOutput.h"

#include <QFile>
#include <QFileInfo>

namespace cq {

ConversionJob::ConversionJob(QObject* parent) : Job(parent), m_runner(new ToolRunner(this)) {
    connect(m_runner, &ToolRunner::errorLine, this, &ConversionJob::onErrorLine);
    connect(m_runner, &ToolRunner::finished, this, &ConversionJob::onRunFinished);
}

ConversionJob::~ConversionJob() {
    if (!m_running)
        return;
    delete m_runner; // stops the tool before its file goes
    m_runner = nullptr;
    QFile::remove(m_output);
}

bool ConversionJob::start(const ToolCommand& command, const QString& outputFileSpec) {
    if (m_running)
        return false;
    m_running = true;
    m_output = outputFileSpec;
    m_durationMs = -1;
    QFile::remove(m_output);
    m_runEnded = false;
    restartProgress();
    // ffmpeg's own temporary files stay next to the output and go with the run.
    m_runner->setTemporaryFolderIn(QFileInfo(m_output).absolutePath());
    // An input that is no regular file (ffmpeg would wait for good on a FIFO) ends the run.
    if (!m_runner->start(command) && !m_runEnded)
        onRunFinished(m_runner->lastResult());
    return true;
}

void ConversionJob::cancel() {
    m_runner->cancel();
}

void ConversionJob::onRunFinished(const RunResult& result) {
    m_runEnded = true;
    // Not from inside the process's notification: a listener may do anything, even delete us.
    QMetaObject::invokeMethod(
        this, [this, result] { finish(result); }, Qt::QueuedConnection);
}

void ConversionJob::finish(const RunResult& result) {
    m_running = false;
    const bool written = result.ok() && QFileInfo(m_output).isFile();
    // A cancelled or failed run may have written part of a file, which would not play.
    if (!written)
        QFile::remove(m_output);
    if (result.cancelled())
        return end(JobEnd::cancelled());
    if (!written)
        return end(JobEnd::failed(result.errorText.trimmed()));
    setProgress(100);
    end(JobEnd::done());
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
    setProgress(FfmpegProgressPercent(reached, m_durationMs));
}

} // namespace cq
