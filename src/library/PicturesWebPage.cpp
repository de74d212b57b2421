#include "library/PicturesWebPage.h"

#include "library/PicturePages.h"
#include "platform/Folders.h"
#include "platform/TextFiles.h"

#include <QDir>
#include <QFileInfo>

namespace cq {

PicturesWebPage::PicturesWebPage(const AppPaths& paths, ToolPool& pool, const QString& convertPath,
                                 QObject* parent)
    : QObject(parent), m_paths(paths),
      m_maker(new ThumbnailMaker(
          pool, convertPath, QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath(), this)) {
    connect(m_maker, &ThumbnailMaker::progressed, this, &PicturesWebPage::progressed);
    connect(m_maker, &ThumbnailMaker::ended, this, [this](const JobEnd& end) {
        writePage(end.isCancelled(), m_knownFailures + m_maker->failures());
    });
}

void PicturesWebPage::RefreshPicturesWebPage(const QString& picturesFolder,
                                             const QStringList& entries) {
    m_folder = picturesFolder;
    m_entries = entries;
    if (m_busy) {
        // The running one writes its page, then this request follows.
        m_pending = true;
        m_maker->cancel();
        return;
    }
    begin();
}

void PicturesWebPage::PreLoadPicsIntoBrowser(const QString& picturesFolder,
                                             const QStringList& entries) {
    if (picturesFolder == m_rememberedPath)
        return;
    m_rememberedPath = picturesFolder;
    RefreshPicturesWebPage(picturesFolder, entries);
}

void PicturesWebPage::begin() {
    m_busy = true;
    m_pending = false;
    m_thumbnailFolder = ThumbnailFolderFor(m_paths.gstrSmallPicsDirectory, m_folder);
    MakeFolderPath(m_thumbnailFolder);
    const QList<ThumbnailJob> planned = PlanThumbnails(m_folder, m_entries, m_thumbnailFolder);
    m_knownFailures = m_maker->knownFailures(planned);
    const QList<ThumbnailJob> jobs = m_maker->withoutKnownFailures(planned);
    emit started(static_cast<int>(jobs.size()));
    if (!m_maker->start(jobs))
        writePage(false, m_knownFailures);
}

void PicturesWebPage::writePage(bool cancelled, const QList<ThumbnailFailure>& failures) {
    m_busy = false;
    if (m_pending) {
        // Superseded: the page of the newer request is the one to write.
        begin();
        return;
    }
    MakeFolderPath(QFileInfo(m_paths.gstrPicturesPageFileSpec).absolutePath());
    // The folder of the newest request, even when a cancel stopped it before it began.
    m_thumbnailFolder = ThumbnailFolderFor(m_paths.gstrSmallPicsDirectory, m_folder);
    SaveTextToFile(BuildThumbnailPage(m_folder, m_entries, m_thumbnailFolder, failures),
                   m_paths.gstrPicturesPageFileSpec);
    emit pageWritten(cancelled, failures);
}

void PicturesWebPage::cancel() {
    m_pending = false;
    m_maker->cancel();
}

} // namespace cq
