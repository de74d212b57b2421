#pragma once

#include "library/PicturePages.h"
#include "platform/Job.h"
#include "platform/ToolPool.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QPointer>
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

// The command of one thumbnail: the picture is read from standard input (so that the tool never
// interprets its name), scaled to fit 134 x 100 within resource limits that make a picture too
// large to decode (a decompression bomb) fail at once, and written in the run's temporary folder
// before it is moved into place, so a stopped run never leaves a half-written thumbnail.
ToolCommand ThumbnailCommand(const QString& convertPath, const ThumbnailJob& job);

// Why the picture tool made no thumbnail, in its own words, out of what it wrote to stderr.
QString PictureToolReason(const QString& errorText);

// Makes thumbnails through the tool pool, one task per picture, so they share the pool's slots
// with every other batch of tools. Progress counts the pictures done; a run ends done or
// cancelled, never failed: pictures that got none are reported with the reason and are not
// tried again while they stay unchanged.
class ThumbnailMaker : public Job {
    Q_OBJECT
public:
    // Each run's temporary folder goes into workSpace.
    ThumbnailMaker(ToolPool& pool, const QString& convertPath, const QString& workSpace,
                   QObject* parent = nullptr);
    // Its tasks still queued or running in the pool are cancelled.
    ~ThumbnailMaker() override;

    // Leaves out the pictures that failed before and have not changed since.
    QList<ThumbnailJob> withoutKnownFailures(const QList<ThumbnailJob>& jobs) const;
    // The earlier failures among these jobs that still hold (the picture has not changed).
    QList<ThumbnailFailure> knownFailures(const QList<ThumbnailJob>& jobs) const;

    // Starts making the thumbnails; false when there is nothing to do, no picture tool, or one
    // run is going on.
    bool start(const QList<ThumbnailJob>& jobs);
    void cancel() override;
    bool isRunning() const override { return !m_tasks.isEmpty(); }
    // Pictures of the last run that got no thumbnail, in the order they were given.
    QList<ThumbnailFailure> failures() const { return m_lastFailures; }
    QStringList failedPictures() const;

private:
    struct KnownFailure {
        QDateTime modified;
        QString reason;
    };
    void onTaskFinished(int id, const RunResult& result);
    void pictureDone();
    void finish();

    QPointer<ToolPool> m_pool; // the pool may go first when the window closes
    QString m_convertPath;
    QString m_workSpace;
    QList<ThumbnailJob> m_jobs;
    QHash<int, int> m_tasks;       // running or queued task -> its job
    QHash<int, QString> m_reasons; // job -> why it got no thumbnail
    QHash<QString, KnownFailure> m_failures;
    QList<ThumbnailFailure> m_lastFailures;
    int m_done = 0;
    bool m_cancelled = false;
};

} // namespace cq
