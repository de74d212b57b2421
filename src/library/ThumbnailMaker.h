#pragma once

#include "platform/ToolRunner.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

struct ThumbnailJob {
    QString picture;   // the full picture path
    QString thumbnail; // where its thumbnail goes (same file name in the thumbnail folder)
};

// The thumbnails that need making: those of pictures whose thumbnail is missing or older than
// the picture. Only files typed as pictures are given to the picture tool.
QList<ThumbnailJob> PlanThumbnails(const QString& picturesFolder, const QStringList& entries,
                                   const QString& thumbnailFolder);

// One script line per job: the picture is read from standard input (so that the tool never
// interprets its name), scaled to fit 134 x 100 and written under a temporary name that is then
// renamed, so a cancelled or failed run never leaves a half-written thumbnail that looks fresh.
// Each line ends by echoing a mark; the marks count the progress.
QString BuildThumbnailScript(const QString& convertPath, const QList<ThumbnailJob>& jobs,
                             int scriptIndex);

// Makes thumbnails with the picture tool, several at once: the jobs are shared out to one
// script per core, each run by its own ToolRunner. Pictures the tool cannot read get no
// thumbnail and are not tried again while they stay unchanged.
class ThumbnailMaker : public QObject {
    Q_OBJECT
public:
    ThumbnailMaker(const QString& convertPath, const QString& scriptFileSpec,
                   QObject* parent = nullptr);

    void setParallelJobs(int count) { m_parallel = std::max(1, count); }
    // Leaves out the pictures that failed before and have not changed since.
    QList<ThumbnailJob> withoutKnownFailures(const QList<ThumbnailJob>& jobs) const;

    // Starts making the thumbnails; false when there is nothing to do, no picture tool, or one
    // run is going on.
    bool start(const QList<ThumbnailJob>& jobs);
    void cancel();
    bool isRunning() const { return m_running > 0; }
    bool wasCancelled() const { return m_cancelled; }
    int doneCount() const { return m_done; }
    int totalCount() const { return static_cast<int>(m_jobs.size()); }
    // Pictures of the last run that got no thumbnail.
    QStringList failedPictures() const { return m_lastFailures; }

signals:
    void progress(int done, int total);
    void finished(bool cancelled);

private:
    void onRunnerFinished();
    QString scriptFileSpecFor(int index) const;

    QString m_convertPath;
    QString m_scriptFileSpec;
    int m_parallel = 1;
    QList<ToolRunner*> m_runners;
    QList<ThumbnailJob> m_jobs;
    QHash<QString, QDateTime> m_failures; // picture -> its modification time when it failed
    QStringList m_lastFailures;
    int m_running = 0;
    int m_done = 0;
    bool m_cancelled = false;
};

} // namespace cq
