#include "library/LastView.h"

namespace cq {

DisplaySurface RevertToLastView(const QList<MediaKind>& mediaTypes) {
    if (mediaTypes.isEmpty())
        return DisplaySurface::Video;
    // The view goes back to another surface than the last row's; after a row that is none of the
    // three (a Both text, an untyped file) to a picture or a text.
    const MediaKind last = mediaTypes.last();
    const MediaKind notWanted =
        last == MediaKind::Text || last == MediaKind::Pictures ? last : MediaKind::Video;
    for (qsizetype row = mediaTypes.size() - 1; row >= 0; --row) {
        const MediaKind kind = mediaTypes.at(row);
        if (kind == notWanted)
            continue;
        if (kind == MediaKind::Video)
            return DisplaySurface::Video;
        if (kind == MediaKind::Pictures)
            return DisplaySurface::Picture;
        if (kind == MediaKind::Text)
            return DisplaySurface::Text;
    }
    return DisplaySurface::Video;
}

} // namespace cq
