#pragma once

#include "render/VoiceLevel.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <optional>

namespace cq {

class ToolPool;
struct RunResult;

// Measures how loud the voice is, through the shared tool pool beside the pieces, and works out
// the gain of the mix. A voice whose peaks the gain would push over the ceiling is measured a
// second time through the limiter, whose loss the gain then makes up. The gain is kept in the
// render's work space under a key of the voice file (size, time, head and tail) and the noise
// setting, so a render of the same voice does not measure it again.
//
// A gain found in the work space is there at once after start(): isRunning() is false and
// finished does not come. Otherwise finished comes once, after the last run; a voice that
// cannot be measured gets no gain, and problem() says why.
class VoiceMeasure : public QObject {
    Q_OBJECT
public:
    VoiceMeasure(QString ffmpeg, QString voice, VoiceOptions options, QString folder,
                 ToolPool& pool, QObject* parent = nullptr);
    ~VoiceMeasure() override;

    void start();
    void cancel();
    bool isRunning() const { return m_taskId != 0; }
    VoiceGain gain() const { return m_gain; }
    bool reused() const { return m_reused; }
    QString problem() const { return m_problem; }
    // Where the gain of this voice and setting is kept.
    QString levelFile() const;

signals:
    void logLine(const QString& line);
    void finished();

private:
    void submit(const std::optional<VoiceGain>& through);
    void onTaskFinished(int id, const RunResult& result);
    void end(const VoiceGain& gain, const QString& problem);
    void keep() const;

    QString m_ffmpeg;
    QString m_voice;
    VoiceOptions m_options;
    QString m_folder;
    QString m_levelFile;
    QPointer<ToolPool> m_pool;
    int m_taskId = 0;
    std::optional<VoiceGain> m_first; // set while the second measurement runs
    VoiceGain m_gain;
    bool m_reused = false;
    QString m_problem;
};

} // namespace cq
