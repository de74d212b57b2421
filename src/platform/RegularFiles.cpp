#include "platform/RegularFiles.h"

#include <QFile>

#include <sys/stat.h>

namespace cq {

FileKind KindOfFile(const QString& path) {
    struct stat st {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &st) != 0)
        return FileKind::Missing;
    if (S_ISREG(st.st_mode))
        return FileKind::Regular;
    if (S_ISDIR(st.st_mode))
        return FileKind::Folder;
    if (S_ISFIFO(st.st_mode))
        return FileKind::Fifo;
    if (S_ISSOCK(st.st_mode))
        return FileKind::Socket;
    if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode))
        return FileKind::Device;
    return FileKind::Other;
}

bool IsRegularFile(const QString& path) {
    return KindOfFile(path) == FileKind::Regular;
}

QString WhyNotARegularFile(const QString& path) {
    switch (KindOfFile(path)) {
    case FileKind::Regular:
        return {};
    case FileKind::Folder:
        return QStringLiteral("a folder");
    case FileKind::Fifo:
        return QStringLiteral("a FIFO");
    case FileKind::Socket:
        return QStringLiteral("a socket");
    case FileKind::Device:
        return QStringLiteral("a device");
    case FileKind::Other:
        return QStringLiteral("not a regular file");
    case FileKind::Missing:
        break;
    }
    struct stat st {};
    if (!path.isEmpty() && ::lstat(QFile::encodeName(path).constData(), &st) == 0)
        return QStringLiteral("a link that leads nowhere");
    return QStringLiteral("missing");
}

} // namespace cq
