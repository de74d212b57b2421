#include "render/MixStep.h"

#include "platform/FfmpegOutput.h"
#include "platform/ToolRunner.h"
#include "render/FullDisk.h"

#include <QFileInfo>

namespace cq {

MixStep::MixStep(ToolCommand command, QString output, QObject* parent)
    : QObject(parent), m_command(std::move(command)), m_output(std::move(output)),
      m_runner(new ToolRunner(this)) {
    m_runner->setKillGraceMilliseconds(500);
    connect(m_runner, &ToolRunner::outputLine, this, &MixStep::onOutput);
    connect(m_runner, &ToolRunner::finished, this, &MixStep::onFinished);
}

bool MixStep::isRunning() const {
    return m_runner->isRunning();
}

void MixStep::start() {
    m_runner->start(m_command);
}

void MixStep::cancel() {
    m_runner->disconnect(this);
    m_runner->cancel();
}

void MixStep::onOutput(const QString& line) {
    const qint64 ms = line.startsWith(u"out_time_us=") ? FfmpegProgressMs(line) : -1;
    if (ms >= 0)
        emit progressed(ms);
}

void MixStep::onFinished(const RunResult& r) {
    const QString folder = QFileInfo(m_output).absolutePath();
    if (r.ok() && QFileInfo(m_output).size() > 0) {
        // ffmpeg ends well even when it could not write the end of the file.
        return emit finished(FullDiskErrorIn(r.errorText, folder));
    }
    const QString full = FullDiskProblem(r.errorText, folder);
    if (!full.isEmpty())
        return emit finished(full);
    emit finished(QStringLiteral("The video could not be mixed with the voice: %1")
                      .arg(r.errorText.trimmed().isEmpty()
                               ? QStringLiteral("ffmpeg ended with exit code %1").arg(r.exitCode)
                               : r.errorText.trimmed()));
}

} // namespace cq
