#include "library/LastView.h"

namespace cq {

DisplaySurface RevertToLastView(const QStringList& mediaTypes) {
    if (mediaTypes.isEmpty())
        return DisplaySurface::Video;
    const QString video = QStringLiteral("Video");
    const QString pictures = QStringLiteral("Pictures");
    const QString text = QStringLiteral("Text");
    const QString& last = mediaTypes.last();
    QStringList wanted;
    if (last == text)
        wanted = {video, pictures};
    else if (last == pictures)
        wanted = {video, text};
    else
        wanted = {pictures, text};
    for (qsizetype row = mediaTypes.size() - 1; row >= 0; --row) {
        const QString& type = mediaTypes.at(row);
        if (type == video && wanted.contains(video))
            return DisplaySurface::Video;
        if (type == pictures && wanted.contains(pictures))
            return DisplaySurface::Picture;
        if (type == text && wanted.contains(text))
            return DisplaySurface::Text;
    }
    return DisplaySurface::Video;
}

} // namespace cq
