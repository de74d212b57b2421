#include "library/PicturePages.h"

#include "library/FolderListing.h"
#include "library/MediaTyping.h"

#include <cmath>

namespace cq {

QString ThumbnailFolderFor(const QString& gstrSmallPicsDirectory, const QString& picturesFolder) {
    QString folder = picturesFolder;
    while (folder.size() > 1 && (folder.endsWith(u'/') || folder.endsWith(u'\\')))
        folder.chop(1);
    qsizetype cut = -1;
    for (QChar separator : {u'/', u'\\', u':'})
        cut = std::max(cut, folder.lastIndexOf(separator));
    const QString last = folder.mid(cut + 1);
    return last.isEmpty() ? gstrSmallPicsDirectory : gstrSmallPicsDirectory + u'/' + last;
}

QString PagePathText(const QString& fileSpec) {
    QString text;
    text.reserve(fileSpec.size() + 8);
    for (QChar ch : fileSpec) {
        if (ch == u'%' || ch == u'#' || ch == u'?')
            text += QStringLiteral("%%1").arg(ch.unicode(), 2, 16, QChar(u'0')).toUpper();
        else
            text += ch;
    }
    return text.toHtmlEscaped();
}

QString FileSpecFromPageUrl(const QUrl& url) {
    if (url.isLocalFile())
        return url.toLocalFile();
    if (!url.scheme().isEmpty())
        return url.toString();
    return url.path(QUrl::FullyDecoded);
}

QString ThumbnailAltText(const QString& entry) {
    QString alt;
    for (QChar ch : entry.left(std::max<qsizetype>(0, entry.size() - 4)))
        if ((ch >= u'A' && ch <= u'Z') || (ch >= u'a' && ch <= u'z'))
            alt += ch;
    return alt;
}

namespace {

constexpr int kNamedFailures = 5;
constexpr int kReasonLength = 90;

QString FailureNote(const QList<ThumbnailFailure>& failures) {
    QStringList named;
    for (const ThumbnailFailure& failure : failures.mid(0, kNamedFailures)) {
        QString reason = failure.reason.simplified();
        if (reason.size() > kReasonLength)
            reason = reason.left(kReasonLength - 3) + QStringLiteral("...");
        const QString name = failure.picture.mid(failure.picture.lastIndexOf(u'/') + 1);
        named << name.toHtmlEscaped() + QStringLiteral(" (") + reason.toHtmlEscaped() +
                     QStringLiteral(")");
    }
    QString note = QStringLiteral("<P style=\"color: silver\">No thumbnail for ") +
                   named.join(QStringLiteral("; "));
    if (failures.size() > kNamedFailures)
        note += QStringLiteral(" and %1 more").arg(failures.size() - kNamedFailures);
    return note + QStringLiteral(".</P>");
}

} // namespace

QString BuildThumbnailPage(const QString& picturesFolder, const QStringList& entries,
                           const QString& thumbnailFolder,
                           const QList<ThumbnailFailure>& failures) {
    QString page = QStringLiteral("<HTML><BODY BGCOLOR = \"Black\">");
    const qsizetype count = std::min<qsizetype>(entries.size(), kMaxThumbnailAnchors);
    for (qsizetype i = 0; i < count; ++i) {
        const QString& entry = entries.at(i);
        if (entry.isEmpty())
            continue;
        page += QStringLiteral("<a href=\"") + PagePathText(JoinPath(picturesFolder, entry)) +
                QStringLiteral("\"><IMG src=\"") + PagePathText(JoinPath(thumbnailFolder, entry)) +
                QStringLiteral("\" style=\"border-style: none\" alt=\"") + ThumbnailAltText(entry) +
                QStringLiteral("\"></a>");
    }
    if (!failures.isEmpty())
        page += FailureNote(failures);
    page += QStringLiteral("</BODY></HTML>");
    return page;
}

bool HasPicturePageExtension(const QString& fileSpec) {
    return GetMediaTypeFromFileSpec(fileSpec) == MediaKind::Pictures;
}

PictureFit FitPictureToViewer(int viewerWidthTwips, double twipsPerPixel, int pictureWidth,
                              int pictureHeight) {
    if (pictureWidth <= 0 || pictureHeight <= 0 || twipsPerPixel <= 0)
        return {};
    const double available = (viewerWidthTwips - 1000) / twipsPerPixel;
    const int width = std::max(1, static_cast<int>(std::floor(available)));
    const auto height = static_cast<int>(static_cast<qint64>(width) * pictureHeight / pictureWidth);
    return {width, height};
}

QString BuildPicturePage(const QString& fileSpec, const PictureFit& fit) {
    const QString width = QString::number(fit.width);
    const QString height = QString::number(fit.height);
    return QStringLiteral("<HTML><BODY BGCOLOR = \"Black\"><Center>") +
           QStringLiteral("<IMG style=\"WIDTH: ") + width + QStringLiteral("px; HEIGHT: ") +
           height + QStringLiteral("px\" alt=\"\" src=\"") + PagePathText(fileSpec) +
           QStringLiteral("\" WIDTH=\"") + width + QStringLiteral("\" HEIGHT=\"") + height +
           QStringLiteral("\">") + QStringLiteral("</Center></BODY></HTML>");
}

ThumbnailClick DecideThumbnailClick(const QUrl& url) {
    ThumbnailClick click;
    const QString raw = url.toString();
    if (raw.isEmpty() || raw.startsWith(QStringLiteral("res://")) ||
        raw == QStringLiteral("http:///"))
        return click;
    click.fileSpec = FileSpecFromPageUrl(url);
    click.mediaType = GetMediaTypeFromFileSpec(click.fileSpec);
    if (click.mediaType == MediaKind::Untyped)
        return click;
    const bool picture = click.mediaType == MediaKind::Pictures;
    click.cancel = picture;
    click.showPicture = picture;
    click.log = click.mediaType != MediaKind::Audio;
    return click;
}

} // namespace cq
