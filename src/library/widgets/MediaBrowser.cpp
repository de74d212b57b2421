#include "library/widgets/MediaBrowser.h"

#include "library/PicturePages.h"
#include "library/PicturesWebPage.h"
#include "library/widgets/MediaTab.h"
#include "library/widgets/PageViewer.h"

#include <QGridLayout>
#include <QMessageBox>
#include <QProgressDialog>
#include <QStackedLayout>
#include <QTimer>

namespace cq {

namespace {
const char* const kHeadings[kMediaTabCount] = {"Video",
                                               "Audio",
                                               "Pictures",
                                               "Sound Effects",
                                               "Text and/or Synthesized Speech",
                                               "Standard Effects",
                                               "Other 1",
                                               "Other 2"};
} // namespace

MediaBrowser::MediaBrowser(const AppPaths& paths, DirectorySettings& settings,
                           const ToolLocation& convert, ToolPool& pool, QWidget* parent)
    : QWidget(parent), m_paths(paths), m_settings(settings),
      m_pages(new PicturesWebPage(paths, pool, convert.path, this)), m_convert(convert) {
    setObjectName(QStringLiteral("MediaBrowser"));
    m_stack = new QStackedLayout(this);
    m_stack->setContentsMargins(0, 0, 0, 0);

    m_grid = new QWidget(this);
    auto* grid = new QGridLayout(m_grid);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(4);
    for (int i = 0; i < kMediaTabCount; ++i) {
        m_tabs[i] = new MediaTab(TabAt(i), QString::fromLatin1(kHeadings[i]), m_grid);
        grid->addWidget(m_tabs[i], i / 4, i % 4);
        connect(m_tabs[i], &MediaTab::fileClicked, this, &MediaBrowser::fileClicked);
        connect(m_tabs[i], &MediaTab::folderChanged, this, &MediaBrowser::onFolderChanged);
    }
    for (int column = 0; column < 4; ++column)
        grid->setColumnStretch(column, 1);
    grid->setRowStretch(0, 1);
    grid->setRowStretch(1, 1);
    m_stack->addWidget(m_grid);

    m_pics = new PageViewer(this);
    m_pics->setObjectName(QStringLiteral("WebBrowserPics"));
    m_pics->setAccessibleName(QStringLiteral("Pictures"));
    connect(m_pics, &PageViewer::anchorClicked, this, &MediaBrowser::onThumbnailAnchor);
    m_stack->addWidget(m_pics);
    m_stack->setCurrentWidget(m_grid);

    connect(m_pages, &PicturesWebPage::started, this, &MediaBrowser::onThumbnailsStarted);
    connect(m_pages, &PicturesWebPage::pageWritten, this, &MediaBrowser::onPageWritten);
}

void MediaBrowser::pointFoldersAtSettings() {
    const QString folders[kMediaTabCount] = {m_settings.gstrMyVideoDirectory,
                                             m_settings.gstrMyMusicDirectory,
                                             m_settings.gstrMyPicturesDirectory,
                                             m_paths.gstrSoundEffectsDirectory,
                                             {},
                                             {},
                                             m_settings.gstrMyStdPicturesDirectory1,
                                             m_settings.gstrMyStdPicturesDirectory2};
    for (int i = 0; i < kMediaTabCount; ++i)
        if (!folders[i].isEmpty())
            showFolder(TabAt(i), folders[i]);
}

void MediaBrowser::setListPointSize(double pointSize) {
    for (MediaTab* tab : m_tabs)
        tab->setListPointSize(pointSize);
}

bool MediaBrowser::showFolder(MediaTabId tab, const QString& path) {
    return this->tab(tab)->showFolder(path);
}

void MediaBrowser::onFolderChanged(MediaTabId tab, const QString& path) {
    switch (tab) {
    case MediaTabId::Video:
        m_settings.gstrMyVideoDirectory = path;
        break;
    case MediaTabId::Audio:
        m_settings.gstrMyMusicDirectory = path;
        break;
    case MediaTabId::Pictures:
        m_settings.gstrMyPicturesDirectory = path;
        tellOnceIfToolMissing();
        m_pages->PreLoadPicsIntoBrowser(path, this->tab(tab)->entries());
        break;
    case MediaTabId::Other1:
        m_settings.gstrMyStdPicturesDirectory1 = path;
        break;
    case MediaTabId::Other2:
        m_settings.gstrMyStdPicturesDirectory2 = path;
        break;
    default: // the other tabs' folders are not kept
        break;
    }
}

void MediaBrowser::setTextFrame(QWidget* frame) {
    tab(MediaTabId::TextAndSpeech)->setBodyWidget(frame);
}

void MediaBrowser::setTabControls(MediaTabId tab, QWidget* controls) {
    this->tab(tab)->setControls(controls);
}

bool MediaBrowser::thumbnailsShown() const {
    return m_stack->currentWidget() == m_pics;
}

void MediaBrowser::cmdViewPics_Click() {
    if (thumbnailsShown()) {
        m_stack->setCurrentWidget(m_grid);
        return;
    }
    // Up-to-date thumbnails are skipped, so building the page on every showing costs little
    // and picks up pictures added to the folder since.
    tellOnceIfToolMissing();
    MediaTab* pictures = tab(MediaTabId::Pictures);
    pictures->refreshFiles();
    m_pages->RefreshPicturesWebPage(pictures->path(), pictures->entries());
    m_pics->showPageFile(m_pages->pageFileSpec());
    m_stack->setCurrentWidget(m_pics);
}

void MediaBrowser::tellOnceIfToolMissing() {
    if (m_convert.found() || m_toldToolMissing)
        return;
    m_toldToolMissing = true;
    // After the current event: this may run while the window is still being built.
    QTimer::singleShot(0, this, [this] {
        QMessageBox::warning(this, QStringLiteral("Pictures"),
                             QStringLiteral("The pictures are shown without thumbnails. ") +
                                 m_convert.missingMessage());
    });
}

void MediaBrowser::onThumbnailAnchor(const QUrl& url) {
    const ThumbnailClick click = DecideThumbnailClick(url);
    if (click.showPicture)
        emit pictureClicked(click.fileSpec);
    // A video or a sound among the pictures plays as a click on it in a file list would; a
    // video logged without being seen would surprise the user in the render.
    if (click.mediaType == MediaKind::Video || click.mediaType == MediaKind::Audio)
        emit fileClicked(MediaTabId::Pictures, click.fileSpec);
    else if (click.log)
        emit mediaEventRequested(click.mediaType, click.fileSpec);
}

void MediaBrowser::onThumbnailsStarted(int total) {
    if (total <= 0)
        return;
    if (!m_progress) {
        m_progress = new QProgressDialog(this);
        m_progress->setObjectName(QStringLiteral("prgThumbnails"));
        m_progress->setWindowTitle(QStringLiteral("Pictures"));
        m_progress->setCancelButtonText(QStringLiteral("Cancel"));
        m_progress->setAutoClose(false);
        m_progress->setAutoReset(false);
        // Thumbnails that are made at once never flash a dialog.
        constexpr int kShowProgressAfterMs = 400;
        m_progress->setMinimumDuration(kShowProgressAfterMs);
        connect(m_progress, &QProgressDialog::canceled, m_pages, &PicturesWebPage::cancel);
        connect(m_pages, &PicturesWebPage::progressed, m_progress, &QProgressDialog::setValue);
    }
    m_progress->setLabelText(QStringLiteral("Making %1 thumbnails...").arg(total));
    m_progress->setRange(0, 100);
    m_progress->setValue(0);
}

void MediaBrowser::onPageWritten() {
    if (m_progress) {
        m_progress->reset();
        m_progress->hide();
    }
    if (thumbnailsShown())
        m_pics->showPageFile(m_pages->pageFileSpec());
}

} // namespace cq
