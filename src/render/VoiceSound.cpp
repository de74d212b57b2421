#include "render/VoiceSound.h"

#include "platform/ToolPool.h"
#include "render/FfmpegInputs.h"
#include "render/FullDisk.h"
#include "render/RenderContainer.h"
#include "render/RenderReport.h"
#include "render/VoiceLevel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdlib>

namespace cq {

namespace {

const QString kPrefix = QStringLiteral("VoiceSound-");

} // namespace

VoiceSound::VoiceSound(QString ffmpeg, QString voice, qint64 voiceMs, QString filter,
                       const RenderContainer& container, QString folder, ToolPool& pool,
                       QObject* parent)
    : QObject(parent), m_ffmpeg(std::move(ffmpeg)), m_voice(std::move(voice)), m_voiceMs(voiceMs),
      m_filter(std::move(filter)), m_container(container), m_folder(std::move(folder)),
      m_pool(&pool) {
    connect(&pool, &ToolPool::taskFinished, this, &VoiceSound::onTaskFinished);
}

VoiceSound::~VoiceSound() {
    cancel();
}

void VoiceSound::start() {
    const QString key = VoiceFileKey(
        m_voice, (m_filter + u'|' + m_container.soundEncoderOptions().join(u' ')).toUtf8());
    const QString base = m_folder + u'/' + kPrefix + key;
    m_keptFile = base + u'.' + m_container.soundSuffix();
    // The partial name keeps the suffix out of the pieces' patterns, which a later render clears.
    m_partial = base + QStringLiteral(".writing");
    if (QFileInfo::exists(m_keptFile)) {
        const QString damaged = soundProblem(m_keptFile);
        if (damaged.isEmpty()) {
            m_file = m_keptFile;
            m_reused = true;
            emit logLine(QStringLiteral("voice sound kept from an earlier render: ") + m_file);
            return;
        }
        emit logLine(QStringLiteral("voice sound kept from an earlier render is made again: ") +
                     damaged);
        QFile::remove(m_keptFile);
    }
    ToolTask task;
    task.command = encodeCommand();
    task.workSpace = m_folder;
    task.urgent = true; // the join waits for it
    emit logLine(QStringLiteral("voice sound: ") + task.command.commandLine());
    m_taskId = m_pool->submit(task);
}

ToolCommand VoiceSound::encodeCommand() const {
    FfmpegInputs inputs;
    inputs.add(m_voice);
    ToolCommand command = inputs.command(m_ffmpeg);
    command.arguments << QStringLiteral("-vn");
    if (!m_filter.isEmpty())
        command.arguments << QStringLiteral("-af") << m_filter;
    command.arguments << m_container.soundEncoderOptions() << QStringLiteral("-y") << m_partial;
    command.inputFiles = {m_voice};
    return command;
}

void VoiceSound::onTaskFinished(int id, const RunResult& result) {
    if (id != m_taskId || m_taskId == 0)
        return;
    m_taskId = 0;
    m_problem = madeProblem(result);
    if (!m_problem.isEmpty()) {
        QFile::remove(m_partial);
    } else if (!QFile::remove(m_keptFile) && QFile::exists(m_keptFile)) {
        m_problem = QStringLiteral("\"%1\" could not be replaced").arg(m_keptFile);
    } else if (!QFile::rename(m_partial, m_keptFile)) {
        m_problem = QStringLiteral("\"%1\" could not be moved into place").arg(m_partial);
    } else {
        m_file = m_keptFile;
        removeOthers();
    }
    emit finished();
}

QString VoiceSound::soundProblem(const QString& file) const {
    const ResultLengths read = m_container.measureSound(file);
    if (!read.complete)
        return QStringLiteral("\"%1\" is damaged: %2").arg(file, read.problem);
    if (std::llabs(read.audioMs - m_voiceMs) > kToleranceMs)
        return QStringLiteral("\"%1\" lasts %2 but the voice lasts %3")
            .arg(file, RenderLengthText(read.audioMs), RenderLengthText(m_voiceMs));
    return {};
}

// ffmpeg may end well after it failed to finish the file ("Error writing trailer"): the file
// itself tells whether it is whole, and the error text whether space ran out.
QString VoiceSound::madeProblem(const RunResult& result) {
    const QString made = QFileInfo(m_partial).size() > 0 ? soundProblem(m_partial)
                                                         : QStringLiteral("nothing was written");
    if (result.ok() && made.isEmpty())
        return {};
    m_lackOfSpace = FullDiskProblem(result.errorText, m_folder);
    if (!m_lackOfSpace.isEmpty())
        return m_lackOfSpace;
    return result.ok() || result.lastErrorLine().isEmpty() ? made : result.lastErrorLine();
}

void VoiceSound::removeOthers() const {
    const QDir dir(m_folder);
    const QString own = QFileInfo(m_keptFile).fileName();
    for (const QString& name : dir.entryList({kPrefix + u'*'}, QDir::Files | QDir::Hidden))
        if (name != own)
            QFile::remove(dir.filePath(name));
}

void VoiceSound::cancel() {
    const int id = std::exchange(m_taskId, 0);
    if (id != 0 && m_pool)
        m_pool->cancel(id);
    QFile::remove(m_partial);
}

void VoiceSound::discard() {
    if (!m_file.isEmpty())
        QFile::remove(m_file);
    m_file.clear();
}

} // namespace cq
