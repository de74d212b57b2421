#pragma once

#include "render/PieceCache.h"
#include "render/RenderPlan.h"

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

namespace cq {

class ToolPool;
struct RunResult;

// Makes the pieces a plan needs that the cache cannot give, through the shared tool pool: still
// pictures several to one ffmpeg run, videos alone, the runs spread over as many slots as the
// pool has. A piece that fails its run or its check is made again on its own once; if that
// fails too, the item shows black for its time and its file is named in failedItems(). A source
// that is no regular file is never handed to ffmpeg: it shows black at once. A write that fails
// for lack of space fails the render. Ends with exactly one of finished, failed or cancelled.
class PieceScheduler : public QObject {
    Q_OBJECT
public:
    static constexpr qsizetype kMaxPiecesPerRun = 24;
    static constexpr int kAttemptsBeforeBlack = 2;

    PieceScheduler(const RenderInputs& in, const RenderPlan& plan, const RenderSpace& space,
                   ToolPool& pool, QObject* parent = nullptr);
    ~PieceScheduler() override;

    void start();
    void cancel();
    bool isRunning() const { return m_running; }
    int reusedPieces() const { return m_reused; }
    QStringList failedItems() const { return m_failedItems; }
    QStringList failureReasons() const { return m_failureReasons; }

signals:
    void progress(qint64 framesDone, qint64 framesTotal);
    void logLine(const QString& line);
    void finished();
    void failed(const QString& message);
    void cancelled();

private:
    struct Run {
        QList<int> segments; // indexes into the plan
        bool black = false;  // the stand-in of an item that could not be rendered
        QElapsedTimer clock; // since the pool started it
    };

    QList<Run> neededRuns();
    void addStillRuns(const QList<int>& stills, QList<Run>& runs) const;
    void submit(const Run& run);
    void onStarted(int id);
    void onFinished(int id, const RunResult& result);
    // False when the render cannot go on.
    bool takePieces(const Run& run, const RunResult& result);
    bool pieceFailed(int index, bool wasBlack, const QString& reason);
    void showBlack(int index, const QString& reason);
    enum class Ending { Finished, Failed, Cancelled };
    void end(Ending ending);
    void cancelRuns();
    qint64 frames(const Run& run) const;
    // "3,9": the plan's numbers of a run's pieces, for the log.
    QString pieceNumbers(const Run& run) const;

    const RenderInputs& m_in;
    const RenderPlan& m_plan;
    const RenderSpace m_space;
    // Watched: a window may delete its pool before the panel that holds this job; the pool's
    // runners then stop the tools themselves.
    QPointer<ToolPool> m_pool;
    PieceCache m_cache;
    QHash<int, Run> m_runs; // submitted to the pool, by task id
    QList<int> m_attempts;  // per segment
    QStringList m_failedItems;
    QStringList m_failureReasons;
    QString m_failure;
    qint64 m_framesDone = 0;
    qint64 m_framesTotal = 0;
    int m_reused = 0;
    bool m_running = false;
    bool m_cancelling = false;
};

} // namespace cq
