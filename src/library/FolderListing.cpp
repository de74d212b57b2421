#include "library/FolderListing.h"

#include "library/MediaTyping.h"
#include "platform/RegularFiles.h"

#include <QDir>
#include <QFileInfo>

namespace cq {

QString JoinPath(const QString& folder, const QString& name) {
    if (folder.endsWith(u'/'))
        return folder + name;
    return folder + u'/' + name;
}

bool IsReadableFolder(const QString& folder) {
    if (folder.isEmpty())
        return false;
    const QFileInfo info(folder);
    return info.isDir() && info.isReadable() && info.isExecutable();
}

QStringList ListRegularFiles(const QString& folder, const QStringList& patterns) {
    QDir dir(folder);
    dir.setNameFilters(patterns);
    dir.setFilter(QDir::Files);
    dir.setSorting(QDir::Name | QDir::IgnoreCase);
    QStringList files = dir.entryList();
    // QDir counts a link as a file whatever it leads to.
    files.removeIf([&](const QString& name) { return !IsRegularFile(JoinPath(folder, name)); });
    return files;
}

QStringList ListMediaFiles(const QString& folder) {
    return ListRegularFiles(folder, MediaFilePatterns());
}

QStringList ListSubfolders(const QString& folder) {
    QDir dir(folder);
    dir.setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
    dir.setSorting(QDir::Name | QDir::IgnoreCase);
    return dir.entryList();
}

QString ParentFolder(const QString& folder) {
    QDir dir(folder);
    if (!dir.cdUp())
        return folder;
    return dir.absolutePath();
}

} // namespace cq
