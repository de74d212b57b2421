#include "platform/FolderExchange.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#ifndef RENAME_EXCHANGE
#define RENAME_EXCHANGE (1 << 1)
#endif

namespace cq {

namespace {

int renameExchange(const QByteArray& a, const QByteArray& b) {
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 28))
    return ::renameat2(AT_FDCWD, a.constData(), AT_FDCWD, b.constData(), RENAME_EXCHANGE);
#else
    // An older C library lacks the wrapper; the kernel call is the same.
    return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, a.constData(), AT_FDCWD,
                                      b.constData(), RENAME_EXCHANGE));
#endif
}

QString systemWords(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

FolderExchange ExchangePaths(const QString& a, const QString& b, QString* why) {
    if (renameExchange(QFile::encodeName(a), QFile::encodeName(b)) == 0)
        return FolderExchange::Exchanged;
    const int error = errno;
    if (error == EINVAL || error == ENOSYS)
        return FolderExchange::NotSupported;
    *why =
        QStringLiteral("\"%1\" and \"%2\" could not be swapped: %3").arg(a, b, systemWords(error));
    return FolderExchange::Failed;
}

bool RenameFolder(const QString& from, const QString& to, QString* why) {
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    *why = QStringLiteral("\"%1\" could not be renamed to \"%2\": %3")
               .arg(from, to, systemWords(errno));
    return false;
}

} // namespace cq
