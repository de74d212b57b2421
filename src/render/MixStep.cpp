#include "render/MixStep.h"

#include "platform/FfmpegOutput.h"
#include "platform/ToolRunner.h"
#include "render/FullDisk.h"

#include <QFile>
#include <QFileInfo>

namespace cq {

MixStep::MixStep(QString line, QString output, QString scriptFile, QObject* parent)
    : QObject(parent), m_line(std::move(line)), m_output(std::move(output)),
      m_scriptFile(std::move(scriptFile)), m_runner(new ToolRunner(this)) {
    m_runner->setKillGraceMilliseconds(500);
    connect(m_runner, &ToolRunner::outputLine, this, &MixStep::onOutput);
    connect(m_runner, &ToolRunner::finished, this, &MixStep::onFinished);
}

bool MixStep::isRunning() const {
    return m_runner->isRunning();
}

void MixStep::start() {
    m_runner->startScript(m_line, m_scriptFile);
}

void MixStep::cancel() {
    m_runner->disconnect(this);
    m_runner->cancel();
    QFile::remove(m_scriptFile);
}

void MixStep::onOutput(const QString& line) {
    const qint64 ms = line.startsWith(u"out_time_us=") ? FfmpegProgressMs(line) : -1;
    if (ms >= 0)
        emit progressed(ms);
}

void MixStep::onFinished(const RunResult& r) {
    QFile::remove(m_scriptFile);
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
