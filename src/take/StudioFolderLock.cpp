#include "take/StudioFolderLock.h"

#include <QDir>

namespace cq {

StudioFolderLock::StudioFolderLock(const QString& appFolder)
    : m_appFolder(appFolder), m_lock(std::make_unique<QLockFile>(
                                  QDir(appFolder).filePath(QString::fromLatin1(kLockFileName)))) {
    // Only a lock whose process is gone is stale, however long a studio has been running.
    m_lock->setStaleLockTime(0);
}

bool StudioFolderLock::tryLock() {
    if (m_lock->tryLock(0))
        return true;
    qint64 pid = 0;
    QString host, application;
    m_lock->getLockInfo(&pid, &host, &application);
    switch (m_lock->error()) {
    case QLockFile::LockFailedError:
        m_problem = QStringLiteral("The application folder \"%1\" is in use: it is already open "
                                   "in another Clipquill studio (process %2). Use that studio, or "
                                   "start this one with another folder (--app-dir).")
                        .arg(QDir::toNativeSeparators(m_appFolder))
                        .arg(pid);
        break;
    default:
        m_problem = QStringLiteral("The application folder \"%1\" could not be locked for this "
                                   "studio; check that it is writable.")
                        .arg(QDir::toNativeSeparators(m_appFolder));
        break;
    }
    return false;
}

} // namespace cq
