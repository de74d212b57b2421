#pragma once

#include "library/ThumbnailMaker.h"
#include "studio/AppPaths.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

// Builds the thumbnail page of the Pictures tab: makes the thumbnails that are missing or out
// of date through the tool pool, then writes the page, which names the pictures that got no
// thumbnail and why. The work runs in the background; a new request while one runs cancels it
// and follows it.
class PicturesWebPage : public QObject {
    Q_OBJECT
public:
    PicturesWebPage(const AppPaths& paths, ToolPool& pool, const QString& convertPath,
                    QObject* parent = nullptr);

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
    // How much of the thumbnails is made, in percent.
    void progressed(int percent);
    void started(int total);
    // The page was written (also after a cancel: it then links the thumbnails made so far).
    // The failures are those of the folder's pictures, also the ones known from before.
    void pageWritten(bool cancelled, const QList<cq::ThumbnailFailure>& failures);

private:
    void begin();
    void writePage(bool cancelled, const QList<ThumbnailFailure>& failures);

    const AppPaths& m_paths;
    ThumbnailMaker* m_maker = nullptr;
    QString m_rememberedPath;
    QString m_folder;
    QStringList m_entries;
    QString m_thumbnailFolder;
    QList<ThumbnailFailure> m_knownFailures;
    bool m_busy = false;
    bool m_pending = false;
};

} // namespace cq
