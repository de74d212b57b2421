#pragma once

#include "studio/TimelineEvent.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace cq {

// Pictures are shown through two small HTML pages that the program writes: the thumbnail page
// of the Pictures tab and the page of one picture fitted to the viewer's width.

// At most this many thumbnails go on one page.
inline constexpr int kMaxThumbnailAnchors = 1000;

// The thumbnail folder of a picture folder: the thumbnail root and the picture folder's last
// component ("/photos/Holiday" -> ROOT/Holiday). The root itself for "/" or an empty folder.
QString ThumbnailFolderFor(const QString& gstrSmallPicsDirectory, const QString& picturesFolder);

// A file path as it stands in a page: HTML-escaped, and with "%", "#" and "?" percent-encoded
// because the viewer reads links and image sources as URLs, where those three would start an
// escape, a fragment or a query. FileSpecFromPageUrl turns such a link back into the path.
QString PagePathText(const QString& fileSpec);
QString FileSpecFromPageUrl(const QUrl& url);

// The entry without its last four characters, keeping only the letters A-Z and a-z.
QString ThumbnailAltText(const QString& entry);

// A picture that got no thumbnail, and why, in a few words.
struct ThumbnailFailure {
    QString picture; // full path
    QString reason;
};

// The whole thumbnail page: one anchor per non-empty entry among the first 1000, in list order;
// under them, when some pictures got no thumbnail, one short line that names them and says why.
QString BuildThumbnailPage(const QString& picturesFolder, const QStringList& entries,
                           const QString& thumbnailFolder,
                           const QList<ThumbnailFailure>& failures = {});

// Whether a file gets a single-picture page: it types as a picture by its whole extension.
bool HasPicturePageExtension(const QString& fileSpec);

struct PictureFit {
    int width = 0;
    int height = 0;
};

// The picture fills the viewer's width less 1000 twips; the height follows its proportions and
// is not limited (a tall picture scrolls). A picture without size fits as 0 x 0.
PictureFit FitPictureToViewer(int viewerWidthTwips, double twipsPerPixel, int pictureWidth,
                              int pictureHeight);

// The single-picture page. The size is given as style and as WIDTH/HEIGHT attributes, which is
// what simple HTML viewers honour.
QString BuildPicturePage(const QString& fileSpec, const PictureFit& fit);

// What a click in the thumbnail page does with its link.
struct ThumbnailClick {
    QString fileSpec;
    MediaKind mediaType = MediaKind::Untyped; // see GetMediaTypeFromFileSpec
    bool cancel = false; // the viewer must not navigate: the picture is shown instead
    bool showPicture = false;
    bool log = false; // the click is a media event of the recording
};
ThumbnailClick DecideThumbnailClick(const QUrl& url);

} // namespace cq
