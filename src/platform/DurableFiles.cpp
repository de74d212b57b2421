#include "platform/DurableFiles.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cq {

namespace {

constexpr size_t kChunk = 1 << 16;

QByteArray native(const QString& path) {
    return QFile::encodeName(path);
}

bool failed(QString* why, const QString& what, const QString& path) {
    *why = QStringLiteral("\"%1\" %2: %3")
               .arg(path, what, QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

// Closes the descriptor when it goes out of scope.
struct Descriptor {
    int fd;
    ~Descriptor() {
        if (fd >= 0)
            ::close(fd);
    }
};

bool writeAll(int fd, const char* bytes, ssize_t size) {
    while (size > 0) {
        const ssize_t n = ::write(fd, bytes, static_cast<size_t>(size));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        bytes += n;
        size -= n;
    }
    return true;
}

// Names in the folder, hidden ones too, without "." and "..".
QStringList entriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

bool statOf(const QString& path, struct stat* st) {
    return ::lstat(native(path).constData(), st) == 0;
}

bool sameBytes(const QString& a, const QString& b) {
    QFile fa(a);
    QFile fb(b);
    if (!fa.open(QIODevice::ReadOnly) || !fb.open(QIODevice::ReadOnly) || fa.size() != fb.size())
        return false;
    while (!fa.atEnd()) {
        const QByteArray chunk = fa.read(kChunk);
        if (chunk.isEmpty() || chunk != fb.read(kChunk))
            return false;
    }
    return true;
}

bool carryEntry(const QString& from, const QString& to, QString* why);

bool carryFolder(const QString& from, const QString& to, mode_t mode, QString* why) {
    // Filled first, given the folder's own permissions after: a read-only folder too.
    if (::mkdir(native(to).constData(), 0700) != 0)
        return failed(why, QStringLiteral("could not be made"), to);
    if (!CarryFolderEntries(from, to, {}, why))
        return false;
    if (::chmod(native(to).constData(), mode & 07777) != 0)
        return failed(why, QStringLiteral("could not be given its permissions"), to);
    return true;
}

// What a symbolic link holds, as written (a relative target stays relative); empty when it
// cannot be read.
QByteArray linkTarget(const QString& link) {
    std::array<char, 4096> target{};
    const ssize_t n = ::readlink(native(link).constData(), target.data(), target.size() - 1);
    if (n <= 0 || static_cast<size_t>(n) >= target.size() - 1)
        return {};
    return QByteArray(target.data(), n);
}

bool carryLink(const QString& from, const QString& to, QString* why) {
    const QByteArray target = linkTarget(from);
    if (target.isEmpty())
        return failed(why, QStringLiteral("could not be read"), from);
    if (::symlink(target.constData(), native(to).constData()) != 0)
        return failed(why, QStringLiteral("could not be made"), to);
    return true;
}

bool carryEntry(const QString& from, const QString& to, QString* why) {
    struct stat st {};
    if (!statOf(from, &st))
        return failed(why, QStringLiteral("could not be read"), from);
    if (S_ISDIR(st.st_mode))
        return carryFolder(from, to, st.st_mode, why);
    if (S_ISLNK(st.st_mode))
        return carryLink(from, to, why);
    if (S_ISFIFO(st.st_mode)) {
        if (::mkfifo(native(to).constData(), st.st_mode & 07777) == 0)
            return true;
        return failed(why, QStringLiteral("could not be made"), to);
    }
    if (!S_ISREG(st.st_mode)) {
        *why = QStringLiteral("\"%1\" is neither a file nor a folder, so it cannot be kept with "
                              "the project. Move it elsewhere and save again.")
                   .arg(from);
        return false;
    }
    // A second name for the same file costs nothing and cannot lose it; file systems without
    // links get a copy.
    if (::link(native(from).constData(), native(to).constData()) == 0)
        return true;
    if (errno == EEXIST)
        return failed(why, QStringLiteral("could not be made"), to);
    return CopyFileSynced(from, to, why);
}

bool removeIfCarried(const QString& old, const QString& now) {
    struct stat o {};
    struct stat n {};
    if (!statOf(old, &o) || !statOf(now, &n) || (o.st_mode & S_IFMT) != (n.st_mode & S_IFMT))
        return false;
    if (S_ISDIR(o.st_mode))
        return RemoveCarriedEntries(old, now);
    bool carried = false;
    if (S_ISREG(o.st_mode))
        carried = (o.st_dev == n.st_dev && o.st_ino == n.st_ino) || sameBytes(old, now);
    else if (S_ISLNK(o.st_mode))
        carried = linkTarget(old) == linkTarget(now);
    else
        carried = S_ISFIFO(o.st_mode);
    return carried && ::unlink(native(old).constData()) == 0;
}

} // namespace

bool SyncPath(const QString& path, QString* why) {
    Descriptor file{::open(native(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)};
    if (file.fd < 0)
        return failed(why, QStringLiteral("could not be opened"), path);
    // A FIFO or a device has nothing of its own on the disk to sync (EINVAL).
    if (::fsync(file.fd) != 0 && errno != EINVAL)
        return failed(why, QStringLiteral("could not be synced to the disk"), path);
    return true;
}

bool SyncTree(const QString& folder, QString* why) {
    for (const QString& name : entriesOf(folder)) {
        const QString path = QDir(folder).filePath(name);
        struct stat st {};
        if (!statOf(path, &st))
            return failed(why, QStringLiteral("could not be read"), path);
        if (S_ISDIR(st.st_mode) ? !SyncTree(path, why)
                                : S_ISREG(st.st_mode) && !SyncPath(path, why))
            return false;
    }
    return SyncPath(folder, why);
}

bool CopyFileSynced(const QString& source, const QString& target, QString* why) {
    Descriptor in{::open(native(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    struct stat st {};
    if (in.fd < 0 || ::fstat(in.fd, &st) != 0)
        return failed(why, QStringLiteral("could not be read"), source);
    if (!S_ISREG(st.st_mode)) {
        *why = QStringLiteral("\"%1\" is not a regular file, so it was not copied.").arg(source);
        return false;
    }
    Descriptor out{::open(native(target).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                          st.st_mode & 0777)};
    if (out.fd < 0)
        return failed(why, QStringLiteral("could not be made"), target);
    // A copy that could not be finished is no copy: it goes.
    struct Unfinished {
        QByteArray path;
        bool done = false;
        ~Unfinished() {
            if (!done)
                ::unlink(path.constData());
        }
    } unfinished{native(target)};
    std::array<char, kChunk> buffer{};
    for (;;) {
        const ssize_t n = ::read(in.fd, buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return failed(why, QStringLiteral("could not be read"), source);
        if (n == 0)
            break;
        if (!writeAll(out.fd, buffer.data(), n))
            return failed(why, QStringLiteral("could not be written"), target);
    }
    if (::fsync(out.fd) != 0)
        return failed(why, QStringLiteral("could not be synced to the disk"), target);
    unfinished.done = true;
    return true;
}

bool CarryFolderEntries(const QString& from, const QString& to, const QStringList& skipNames,
                        QString* why) {
    for (const QString& name : entriesOf(from))
        if (!skipNames.contains(name) &&
            !carryEntry(QDir(from).filePath(name), QDir(to).filePath(name), why))
            return false;
    return true;
}

bool RemoveCarriedEntries(const QString& old, const QString& now) {
    for (const QString& name : entriesOf(old))
        removeIfCarried(QDir(old).filePath(name), QDir(now).filePath(name));
    return ::rmdir(native(old).constData()) == 0;
}

} // namespace cq
