#pragma once

#include "library/MediaTabs.h"
#include "platform/ToolLocator.h"
#include "studio/AppPaths.h"
#include "studio/DirectorySettings.h"
#include "studio/TimelineEvent.h"

#include <QString>
#include <QWidget>

class QProgressDialog;
class QStackedLayout;

namespace cq {

class MediaTab;
class PageViewer;
class PicturesWebPage;
class ToolPool;

// The eight media tabs side by side in two rows, and the thumbnail viewer WebBrowserPics that
// covers them while it is shown. Folder changes reach the directory settings at once; a change
// of the Pictures folder rebuilds the thumbnail page in the background with a progress dialog.
class MediaBrowser : public QWidget {
    Q_OBJECT
public:
    MediaBrowser(const AppPaths& paths, DirectorySettings& settings, const ToolLocation& convert,
                 ToolPool& pool, QWidget* parent = nullptr);

    MediaTab* tab(MediaTabId tab) const { return m_tabs[TabIndex(tab)]; }
    PicturesWebPage& picturesPage() { return *m_pages; }

    // Points the tabs at the folders of the settings (the start-up order); a folder that does not
    // exist leaves its lists where they were.
    void pointFoldersAtSettings();
    // Points a tab's lists at a folder; false (and the lists as they were) when it cannot be read.
    bool showFolder(MediaTabId tab, const QString& path);

    // The text list frame and each tab's playback controls come from the text and playback
    // parts of the window.
    void setTextFrame(QWidget* frame);
    void setTabControls(MediaTabId tab, QWidget* controls);

    void setListPointSize(double pointSize);
    void cmdViewPics_Click();
    bool thumbnailsShown() const;

signals:
    // A file of a tab's list was clicked, or a video or sound thumbnail of the picture page (as
    // a file of the Pictures tab).
    void fileClicked(cq::MediaTabId tab, const QString& fileSpec);
    // A thumbnail of a picture was clicked: the picture is to be shown.
    void pictureClicked(const QString& fileSpec);
    // A picture thumbnail click, which a running recording logs.
    void mediaEventRequested(MediaKind mediaType, const QString& fileSpec);

private:
    void onFolderChanged(MediaTabId tab, const QString& path);
    void onThumbnailAnchor(const QUrl& url);
    void onThumbnailsStarted(int total);
    void onPageWritten();
    void tellOnceIfToolMissing();

    const AppPaths& m_paths;
    DirectorySettings& m_settings;
    MediaTab* m_tabs[kMediaTabCount] = {};
    QWidget* m_grid = nullptr;
    PageViewer* m_pics = nullptr;
    QStackedLayout* m_stack = nullptr;
    PicturesWebPage* m_pages = nullptr;
    QProgressDialog* m_progress = nullptr;
    ToolLocation m_convert;
    bool m_toldToolMissing = false;
};

} // namespace cq
