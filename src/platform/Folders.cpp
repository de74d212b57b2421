#include "platform/Folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

namespace cq {

bool MakeFolderPath(const QString& path) {
    const QString trimmed = path.trimmed();
    if (trimmed.isEmpty())
        return false;
    if (QFileInfo(trimmed).isDir())
        return true;
    return QDir().mkpath(trimmed);
}

QString LandingPath(const QString& path) {
    const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QString folder = QFileInfo(absolute).path();
    QString below = QFileInfo(absolute).fileName();
    while (!QFileInfo(folder).isDir()) {
        const QFileInfo info(folder);
        if (info.path() == folder)
            return absolute;
        below = info.fileName() + u'/' + below;
        folder = info.path();
    }
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (canonical.isEmpty())
        return absolute;
    return canonical == u"/" ? canonical + below : canonical + u'/' + below;
}

QString ReadPath(const QString& path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? LandingPath(path) : canonical;
}

void TakeHomeFromAccountWhenUnset() {
    if (!qEnvironmentVariableIsEmpty("HOME"))
        return;
    const passwd* account = ::getpwuid(::getuid());
    if (account && account->pw_dir && account->pw_dir[0] == '/')
        qputenv("HOME", account->pw_dir);
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
