#pragma once

#include "render/RenderPlan.h"
#include "render/RenderReport.h"
#include "render/RenderWorkspace.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

class PieceScheduler;
class ToolRunner;
struct RunResult;

// Runs a render in steps that never block the window: it takes a work space of its own, probes
// which videos have sound, has the pieces made (PieceScheduler), joins them by stream copy and
// mixes in the voice, then measures the result. Only a result whose lengths match the voice
// replaces the previous one; cancel stops every tool within a second.
class RenderJob : public QObject {
    Q_OBJECT
public:
    // Lengths of the result may differ from the voice by this much.
    static constexpr qint64 kToleranceMs = 200;

    RenderJob(RenderInputs inputs, QString ffprobe, QString scriptFolder,
              QObject* parent = nullptr);
    ~RenderJob() override;

    void start();
    void cancel();
    bool isRunning() const { return m_running; }
    const RenderPlan& plan() const { return m_plan; }
    const RenderInputs& inputs() const { return m_in; }
    const RenderReport& report() const { return m_report; }
    // Runs the job to its end while the event loop keeps running; for callers without a window.
    RenderReport runToEnd();

    void setParallelism(int runners) { m_parallelism = std::max(1, runners); }

signals:
    void progressChanged(int percent);
    void statusChanged(const QString& text);
    void finished(const cq::RenderReport& report);

private:
    bool takeWorkspace();
    void probeNextVideo();
    void startPieces();
    void startMix();
    void onMixOutput(const QString& line);
    void startMeasure();
    void measureVideo();
    void onSoundProbed(const RunResult& result);
    void judgeLengths();
    void publish();
    void finish(RenderReport::Outcome outcome, const QString& message);
    void setProgress(int percent);
    void log(const QString& line);
    QString writeLog();
    QString scriptFile() const;

    RenderInputs m_in;
    RenderPlan m_plan;
    RenderReport m_report;
    RenderWorkspace m_workspace;
    QString m_ffprobe;
    QString m_scriptFolder;
    ToolRunner* m_runner = nullptr;
    PieceScheduler* m_pieces = nullptr;
    QStringList m_videosToProbe;
    int m_parallelism = 2;
    bool m_running = false;
    bool m_cancelling = false;
    int m_lastPercent = -1;
    QStringList m_log;
    QElapsedTimer m_clock;
};

// The inputs of a render of the studio's work folder: paths of the application folder, the
// output size and rate, the rows and the voice.
struct AppPaths;
struct StudioSettings;
RenderInputs StudioRenderInputs(const AppPaths& paths, const StudioSettings& studio,
                                const QList<EventRow>& rows, const QString& voiceFile,
                                qint64 recordingMs, const QString& output);
QString LocateFfprobe(const AppPaths& paths);

} // namespace cq
