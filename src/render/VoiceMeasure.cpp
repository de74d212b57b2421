#include "render/VoiceMeasure.h"

#include "platform/TextFiles.h"
#include "platform/ToolPool.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cq {

namespace {

constexpr qint64 kKeyedBytes = 64 * 1024;

// A new way of measuring or a new target makes every kept gain stale.
const char kMethod[] = "ebur128 -16 LUFS, limit -2.5 dB at 4x, v1";

// Size and time tell a new take from the old one; the head and tail catch a file copied in
// place with its time kept. Reading the whole voice would cost the window a moment for long takes.
QString voiceKey(const QString& voice, const VoiceOptions& options) {
    const QFileInfo fi(voice);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray(kMethod));
    hash.addData(QStringLiteral("|%1|%2|%3|")
                     .arg(fi.size())
                     .arg(fi.lastModified().toMSecsSinceEpoch())
                     .arg(options.reduceNoise ? 1 : 0)
                     .toUtf8());
    QFile file(voice);
    if (file.open(QIODevice::ReadOnly)) {
        hash.addData(file.read(kKeyedBytes));
        if (file.size() > kKeyedBytes && file.seek(file.size() - kKeyedBytes))
            hash.addData(file.read(kKeyedBytes));
    }
    return QString::fromLatin1(hash.result().toHex().left(16));
}

QString runProblem(const RunResult& r) {
    const QStringList lines = r.errorText.trimmed().split(u'\n', Qt::SkipEmptyParts);
    return lines.isEmpty() ? QStringLiteral("ffmpeg ended with exit code %1").arg(r.exitCode)
                           : lines.last().trimmed();
}

} // namespace

VoiceMeasure::VoiceMeasure(QString ffmpeg, QString voice, VoiceOptions options, QString folder,
                           ToolPool& pool, QObject* parent)
    : QObject(parent), m_ffmpeg(std::move(ffmpeg)), m_voice(std::move(voice)), m_options(options),
      m_folder(std::move(folder)), m_pool(&pool) {
    connect(&pool, &ToolPool::taskFinished, this, &VoiceMeasure::onTaskFinished);
}

VoiceMeasure::~VoiceMeasure() {
    cancel();
}

QString VoiceMeasure::levelFile() const {
    return m_levelFile;
}

void VoiceMeasure::start() {
    m_levelFile = m_folder + QStringLiteral("/VoiceLevel-") + voiceKey(m_voice, m_options) +
                  QStringLiteral(".txt");
    const std::optional<VoiceGain> kept =
        VoiceGain::fromText(QString::fromUtf8(ReadFileToBytes(m_levelFile)));
    if (kept) {
        m_gain = *kept;
        m_reused = true;
        emit logLine(QStringLiteral("voice level kept from an earlier render: ") +
                     m_gain.text().trimmed());
        return;
    }
    submit(std::nullopt);
}

void VoiceMeasure::submit(const std::optional<VoiceGain>& through) {
    ToolTask task;
    task.script = VoiceMeasureLine(m_ffmpeg, m_voice, m_options, through);
    task.inputFiles = {m_voice};
    task.workSpace = m_folder;
    emit logLine(QStringLiteral("voice level: ") + task.script);
    m_taskId = m_pool->submit(task);
}

void VoiceMeasure::onTaskFinished(int id, const RunResult& result) {
    if (id != m_taskId || m_taskId == 0)
        return;
    m_taskId = 0;
    const LoudnessSummary measured = FfmpegLoudnessSummary(result.errorText);
    if (!result.ok() || !measured.ok())
        return end({}, result.ok() ? QStringLiteral("ffmpeg reported no loudness")
                                   : runProblem(result));
    emit logLine(QStringLiteral("voice measured: %1 LUFS, true peak %2 dBTP")
                     .arg(measured.integratedLufs)
                     .arg(measured.truePeakDb));
    if (m_first)
        return end(CorrectedGain(*m_first, measured), {});
    const VoiceGain gain = GainForLoudness(measured);
    if (!gain.limit)
        return end(gain, {});
    m_first = gain;
    submit(gain);
}

void VoiceMeasure::end(const VoiceGain& gain, const QString& problem) {
    m_gain = gain;
    m_problem = problem;
    if (problem.isEmpty())
        keep();
    emit finished();
}

// Only the gain of the voice in hand stays: older takes' gains go.
void VoiceMeasure::keep() const {
    const QDir dir(m_folder);
    const QString own = QFileInfo(m_levelFile).fileName();
    for (const QString& name :
         dir.entryList({QStringLiteral("VoiceLevel-*.txt")}, QDir::Files | QDir::Hidden))
        if (name != own)
            QFile::remove(dir.filePath(name));
    if (!WriteWholeFile(m_gain.text().toUtf8(), m_levelFile))
        QFile::remove(m_levelFile); // measured again next time
}

void VoiceMeasure::cancel() {
    const int id = m_taskId;
    m_taskId = 0;
    if (id != 0 && m_pool)
        m_pool->cancel(id);
}

} // namespace cq
