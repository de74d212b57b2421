#include "render/VoiceMeasure.h"

#include "platform/TextFiles.h"
#include "platform/ToolPool.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace cq {

namespace {

// Each run through the limiter brings the loudness closer; three leave a tenth of a decibel.
constexpr int kMaxLimitedRuns = 3;

// A new way of measuring or a new target makes every kept outcome stale.
const char kMethod[] = "astats floor, ebur128 -16 LUFS, limit -2.5 dB at 4x, mixed down, v2";

QString measureKey(const QString& voice, const VoiceOptions& options) {
    return VoiceFileKey(voice, QByteArray(kMethod) + (options.even ? "|even" : "|as-is") +
                                   (options.reduceNoise ? "|denoise" : ""));
}

} // namespace

VoiceMeasure::VoiceMeasure(QString ffmpeg, QString voice, VoiceOptions options, QString folder,
                           ToolPool& pool, QObject* parent)
    : Job(parent), m_ffmpeg(std::move(ffmpeg)), m_voice(std::move(voice)), m_options(options),
      m_folder(std::move(folder)), m_pool(&pool) {
    connect(&pool, &ToolPool::taskFinished, this, &VoiceMeasure::onTaskFinished);
}

VoiceMeasure::~VoiceMeasure() {
    stopRun();
}

void VoiceMeasure::start() {
    m_keptFile = m_folder + QStringLiteral("/VoiceLevel-") + measureKey(m_voice, m_options) +
                 QStringLiteral(".txt");
    const std::optional<VoiceTreatment> kept =
        VoiceTreatment::fromText(QString::fromUtf8(ReadFileToBytes(m_keptFile)));
    if (kept) {
        m_treatment = *kept;
        m_reused = true;
        emit logLine(QStringLiteral("voice kept from an earlier render: ") +
                     m_treatment.text().trimmed());
        return end(JobEnd::done());
    }
    submit(m_options.reduceNoise ? Stage::NoiseFloor : Stage::Loudness);
}

void VoiceMeasure::submit(Stage stage) {
    m_stage = stage;
    ToolTask task;
    task.command = VoiceMeasureCommand(m_ffmpeg, m_voice,
                                       stage == Stage::NoiseFloor
                                           ? NoiseFloorMeasureFilter(m_options)
                                           : LoudnessMeasureFilter(m_options, m_treatment));
    task.workSpace = m_folder;
    task.urgent = true; // the join waits for it
    emit logLine(QStringLiteral("measuring the voice: ") + task.command.commandLine());
    m_taskId = m_pool->submit(task);
}

void VoiceMeasure::onTaskFinished(int id, const RunResult& result) {
    if (id != m_taskId || m_taskId == 0)
        return;
    m_taskId = 0;
    if (!result.ok())
        return finish(result.lastErrorLine());
    bool onTarget = true;
    if (!takeMeasurement(result.errorText, onTarget))
        return finish(QStringLiteral("ffmpeg reported no measurement"));
    if (m_stage == Stage::NoiseFloor && m_options.even)
        return submit(Stage::Loudness);
    if (m_stage == Stage::Loudness && m_treatment.limit)
        return submit(Stage::Limited);
    if (m_stage == Stage::Limited && !onTarget && ++m_limitedRuns < kMaxLimitedRuns)
        return submit(Stage::Limited);
    finish({});
}

bool VoiceMeasure::takeMeasurement(const QString& stderrText, bool& onTarget) {
    if (m_stage == Stage::NoiseFloor) {
        const double floor = FfmpegNoiseFloorDb(stderrText);
        m_treatment.noiseFloorDb = NoiseFloorForReduction(floor);
        emit logLine(QStringLiteral("voice noise floor: %1 dB").arg(floor));
        return !std::isnan(floor);
    }
    const LoudnessSummary loudness = FfmpegLoudnessSummary(stderrText);
    emit logLine(QStringLiteral("voice loudness: %1 LUFS, true peak %2 dBTP")
                     .arg(loudness.integratedLufs)
                     .arg(loudness.truePeakDb));
    if (m_stage == Stage::Loudness)
        m_treatment = WithGainForLoudness(m_treatment, loudness);
    else
        onTarget = MakeUpLimiterLoss(m_treatment, loudness);
    return loudness.ok();
}

void VoiceMeasure::finish(const QString& problem) {
    if (problem.isEmpty())
        keep();
    else
        m_treatment = {};
    end(problem.isEmpty() ? JobEnd::done() : JobEnd::failed(problem));
}

// Only the outcome for the voice in hand stays: older takes' go.
void VoiceMeasure::keep() const {
    const QDir dir(m_folder);
    const QString own = QFileInfo(m_keptFile).fileName();
    for (const QString& name :
         dir.entryList({QStringLiteral("VoiceLevel-*.txt")}, QDir::Files | QDir::Hidden))
        if (name != own)
            QFile::remove(dir.filePath(name));
    if (!WriteWholeFile(m_treatment.text().toUtf8(), m_keptFile))
        QFile::remove(m_keptFile); // measured again next time
}

void VoiceMeasure::cancel() {
    if (!isRunning())
        return;
    stopRun();
    end(JobEnd::cancelled());
}

// The pool's report of the stopped run is not waited for: the measurement is over now.
void VoiceMeasure::stopRun() {
    const int id = m_taskId;
    m_taskId = 0;
    if (id != 0 && m_pool)
        m_pool->cancel(id);
}

} // namespace cq
