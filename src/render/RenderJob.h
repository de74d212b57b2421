#pragma once

#include "render/RenderPlan.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class QTimer;

namespace cq {

class ToolRunner;
struct RunResult;

struct RenderReport {
    enum class Outcome { Rendered, Failed, Cancelled };
    Outcome outcome = Outcome::Failed;
    QString output;          // the result, when there is one
    QString logFile;         // the render log the user can open
    QString message;         // what the user is told
    QStringList failedItems; // files that could not be rendered and show black instead
    qint64 voiceMs = 0;
    qint64 outputMs = -1; // measured lengths of the result and its streams
    qint64 videoMs = -1;
    qint64 audioMs = -1;
    bool lengthOk = false; // every measured length within the tolerance of the voice
    qint64 elapsedMs = 0;
    int reusedPieces = 0;

    bool ok() const { return outcome == Outcome::Rendered && lengthOk; }
};

// Runs a render plan: the pieces on every core at once, the byte-wise join, the final pass,
// then measures the result against the voice. The previous result is replaced only by a
// complete new one; cancel stops every tool within a second.
class RenderJob : public QObject {
    Q_OBJECT
public:
    // Lengths of the result may differ from the voice by this much.
    static constexpr qint64 kToleranceMs = 200;
    static constexpr qsizetype kMaxPiecesPerRun = 8;

    RenderJob(RenderInputs inputs, QString ffprobe, QString scriptFolder,
              QObject* parent = nullptr);
    ~RenderJob() override;

    void start();
    void cancel();
    bool isRunning() const { return m_running; }
    const RenderPlan& plan() const { return m_plan; }
    const RenderReport& report() const { return m_report; }
    QString logFile() const;
    // Runs the job to its end while the event loop keeps running; for callers without a window.
    RenderReport runToEnd();

    void setParallelism(int runners) { m_parallelism = std::max(1, runners); }

signals:
    void progressChanged(int percent);
    void statusChanged(const QString& text);
    void finished(const cq::RenderReport& report);

private:
    enum class Phase { Idle, Segments, Join, Final, Measure, Done };

    void startSegments();
    void startNextSegment(int runnerIndex);
    void segmentFinished(int runnerIndex, const RunResult& result);
    void startJoin();
    void startFinal();
    void onFinalOutput(const QString& line);
    void startMeasure();
    void onMeasured(const RunResult& result);
    void finish(RenderReport::Outcome outcome, const QString& message);
    void setProgress(int percent);
    void log(const QString& line);
    QString scriptFile(int runnerIndex) const;
    QString reuseKey(const RenderSegment& s) const;
    QString keyFileOf(const RenderSegment& s) const;

    RenderInputs m_in;
    RenderPlan m_plan;
    RenderReport m_report;
    QString m_ffprobe;
    QString m_scriptFolder;
    QList<ToolRunner*> m_runners;
    QList<QList<int>> m_queue;      // pieces still to make, by ffmpeg run
    QList<QList<int>> m_runnerWork; // the pieces each runner is making; empty when idle
    QList<bool> m_runnerOnBlack;
    QList<QTimer*> m_watchdogs;
    qint64 m_framesDone = 0;
    int m_parallelism = 2;
    Phase m_phase = Phase::Idle;
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

Q_DECLARE_METATYPE(cq::RenderReport)
