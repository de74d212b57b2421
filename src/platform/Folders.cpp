#include "platform/Folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cq {

bool MakeFolderPath(const QString& path) {
    const QString trimmed = path.trimmed();
    if (trimmed.isEmpty())
        return false;
    if (QFileInfo(trimmed).isDir())
        return true;
    return QDir().mkpath(trimmed);
}

} // namespace cq

namespace cq {

int DeleteFilesInFolder(const QString& folder, const QStringList& keepNames) {
    int failures = 0;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (!keepNames.contains(name) && !QFile::remove(dir.filePath(name)))
            ++failures;
    return failures;
}

} // namespace cq
