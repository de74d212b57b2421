#pragma once

#include "library/ThumbnailMaker.h"
#include "studio/AppPaths.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

// Builds the thumbnail page of the Pictures tab: makes the thumbnails that are missing or out
// of date, then writes the page. The work runs in the background; a new request while one runs
// cancels it and follows it.
class PicturesWebPage : public QObject {
    Q_OBJECT
public:
    PicturesWebPage(const AppPaths& paths, const QString& convertPath, QObject* parent = nullptr);

    // Makes the thumbnails of the folder's entries and writes the thumbnail page.
    void RefreshPicturesWebPage(const QString& picturesFolder, const QStringList& entries);
    // Refreshes only when the folder differs from the one the page was last built for.
    void PreLoadPicsIntoBrowser(const QString& picturesFolder, const QStringList& entries);

    void cancel();
    bool isBusy() const { return m_busy; }
    QString rememberedPicturesPath() const { return m_rememberedPath; }
    QString pageFileSpec() const { return m_paths.gstrPicturesPageFileSpec; }
    ThumbnailMaker& maker() { return *m_maker; }

signals:
    void progress(int done, int total);
    void started(int total);
    // The page was written (also after a cancel: it then links the thumbnails made so far).
    void pageWritten(bool cancelled, const QStringList& failedPictures);

private:
    void begin();
    void writePage(bool cancelled, const QStringList& failedPictures);

    const AppPaths& m_paths;
    ThumbnailMaker* m_maker = nullptr;
    QString m_rememberedPath;
    QString m_folder;
    QStringList m_entries;
    QString m_thumbnailFolder;
    bool m_busy = false;
    bool m_pending = false;
};

} // namespace cq
