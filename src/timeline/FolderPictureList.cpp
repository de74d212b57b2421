#include "timeline/FolderPictureList.h"

#include "library/MediaTyping.h"

#include <QDir>

namespace cq {

QStringList FolderPictureList::entries() const {
    QStringList pictures;
    const QStringList files = QDir(m_folder).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QString& name : files)
        if (GetMediaTypeFromFileSpec(name) == u"Pictures")
            pictures << name;
    return pictures;
}

} // namespace cq
