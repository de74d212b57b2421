#pragma once

#include "platform/Job.h"
#include "render/VoiceLevel.h"

#include <QPointer>
#include <QString>

namespace cq {

class ToolPool;
struct RunResult;

// Measures the voice, through the shared tool pool beside the pieces, and works out what the mix
// does to it: for noise reduction, the level of its background noise; for an even voice, how
// loud it is after that, and so its gain. A voice whose peaks the gain would push over the
// ceiling is measured again through the limiter, whose loss the gain then makes up, a few times
// at most, until the loudness is on target. The
// outcome is kept in the render's work space under a key of the voice file (size, time, head
// and tail) and the options, so a render of the same voice does not measure it again.
//
// An outcome found in the work space is there at once: ended comes from inside start(). Otherwise
// it comes after the last run; a voice that cannot be measured is left as it is, and the end
// (Failed) says why. A cancel ends it at once.
class VoiceMeasure : public Job {
    Q_OBJECT
public:
    VoiceMeasure(QString ffmpeg, QString voice, VoiceOptions options, QString folder,
                 ToolPool& pool, QObject* parent = nullptr);
    ~VoiceMeasure() override;

    void start();
    void cancel() override;
    bool isRunning() const override { return m_taskId != 0; }
    VoiceTreatment treatment() const { return m_treatment; }
    bool reused() const { return m_reused; }

signals:
    void logLine(const QString& line);

private:
    enum class Stage { NoiseFloor, Loudness, Limited };

    void submit(Stage stage);
    void onTaskFinished(int id, const RunResult& result);
    // False when the stage's run told nothing. onTarget: false when a run through the limiter
    // found the loudness off and moved the gain.
    bool takeMeasurement(const QString& stderrText, bool& onTarget);
    void finish(const QString& problem);
    void keep() const;
    void stopRun();

    QString m_ffmpeg;
    QString m_voice;
    VoiceOptions m_options;
    QString m_folder;
    QString m_keptFile;
    QPointer<ToolPool> m_pool;
    int m_taskId = 0;
    Stage m_stage = Stage::NoiseFloor;
    int m_limitedRuns = 0;
    VoiceTreatment m_treatment;
    bool m_reused = false;
};

} // namespace cq
