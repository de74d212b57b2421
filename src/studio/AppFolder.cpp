#include "studio/AppFolder.h"

#include "platform/Folders.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace cq {

namespace {

const char* const kInstalledFolders[] = {"System", "SystemMedia", "SystemMediaGen"};

bool copyEntry(const QFileInfo& from, const QString& to) {
    if (from.isSymLink())
        return QFile::link(from.symLinkTarget(), to);
    if (from.isDir())
        return MakeFolderPath(to);
    return QFile::copy(from.absoluteFilePath(), to);
}

bool copyTree(const QString& from, const QString& to) {
    if (!MakeFolderPath(to))
        return false;
    bool ok = true;
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        const QString target = to + u'/' + QDir(from).relativeFilePath(info.absoluteFilePath());
        if (QFileInfo(target).exists() || QFileInfo(target).isSymLink())
            continue;
        ok = copyEntry(info, target) && ok;
    }
    return ok;
}

} // namespace

bool IsWritableFolder(const QString& folder) {
    if (!QFileInfo(folder).isDir())
        return false;
    // Permission bits say too little (read-only mounts, root): try it.
    QTemporaryFile probe(folder + QStringLiteral("/.clipquill-write-test-XXXXXX"));
    return probe.open();
}

bool SeedAppFolder(const QString& installFolder, const QString& target) {
    if (QDir(installFolder).canonicalPath() == QDir(target).canonicalPath())
        return true;
    bool ok = true;
    for (const char* name : kInstalledFolders) {
        const QString from = installFolder + u'/' + QLatin1String(name);
        const QString to = target + u'/' + QLatin1String(name);
        if (QFileInfo(to).exists() || !QFileInfo(from).isDir())
            continue;
        ok = copyTree(from, to) && ok;
    }
    return ok;
}

QString DefaultFallbackAppFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Clipquill");
}

AppFolderChoice ChooseAppFolder(const QString& requested, const QString& installFolder,
                                const QString& fallbackFolder) {
    QString folder = requested.isEmpty() ? installFolder : QFileInfo(requested).absoluteFilePath();
    if (requested.isEmpty() && !IsWritableFolder(installFolder))
        folder = fallbackFolder;
    folder = QDir::cleanPath(folder);
    if (!MakeFolderPath(folder) || !IsWritableFolder(folder))
        return {QString(), QStringLiteral("The application folder \"%1\" cannot be written. "
                                          "Choose a writable folder with --app-dir.")
                               .arg(folder)};
    if (!SeedAppFolder(installFolder, folder))
        return {folder, QStringLiteral("Some files of the installation could not be copied "
                                       "into \"%1\".")
                            .arg(folder)};
    return {folder, QString()};
}

} // namespace cq
