#include "timeline/FolderPictureList.h"

#include "library/FolderListing.h"
#include "library/MediaTyping.h"

namespace cq {

QStringList FolderPictureList::entries() const {
    QStringList pictures;
    const QStringList files = ListRegularFiles(m_folder, {QStringLiteral("*")});
    for (const QString& name : files)
        if (GetMediaTypeFromFileSpec(name) == MediaKind::Pictures)
            pictures << name;
    return pictures;
}

} // namespace cq
