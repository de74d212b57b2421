#include "platform/FileSyncer.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace cq {

FileSyncer::FileSyncer(bool dataOnly, QObject* parent)
    : QObject(parent), m_sync(dataOnly ? SyncFunction(::fdatasync) : SyncFunction(::fsync)),
      m_thread([this] { run(); }) {}

FileSyncer::~FileSyncer() {
    release();
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

bool FileSyncer::follow(int fd, QString* why) {
    release();
    const int copy = ::fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) {
        *why = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    const std::lock_guard lock(m_mutex);
    m_fd = copy;
    return true;
}

void FileSyncer::requestSync() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_fd < 0 || (!m_jobs.empty() && m_jobs.back().fd == m_fd))
            return;
        m_jobs.push_back({m_fd, false});
    }
    m_wake.notify_all();
}

void FileSyncer::release() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_fd < 0)
            return;
        if (!m_jobs.empty() && m_jobs.back().fd == m_fd)
            m_jobs.back().closeAfter = true;
        else
            m_jobs.push_back({m_fd, true});
        m_fd = -1;
    }
    m_wake.notify_all();
}

bool FileSyncer::isBusy() const {
    const std::lock_guard lock(m_mutex);
    return m_running || !m_jobs.empty();
}

void FileSyncer::setSyncFunction(SyncFunction sync) {
    const std::lock_guard lock(m_mutex);
    m_sync = std::move(sync);
}

void FileSyncer::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const Job job = m_jobs.front();
        m_jobs.pop_front();
        m_running = true;
        const SyncFunction sync = m_sync;
        lock.unlock();
        const int result = sync(job.fd);
        const int error = errno;
        if (job.closeAfter)
            ::close(job.fd);
        report(result, error);
        lock.lock();
        m_running = false;
    }
}

void FileSyncer::report(int result, int error) {
    // A file that cannot be synced (EINVAL: a pipe, not a disk file) is no failure.
    if (result == 0 || error == EINVAL) {
        QMetaObject::invokeMethod(
            this, [this] { emit synced(); }, Qt::QueuedConnection);
        return;
    }
    const QString why = QString::fromLocal8Bit(std::strerror(error));
    QMetaObject::invokeMethod(
        this, [this, why] { emit syncFailed(why); }, Qt::QueuedConnection);
}

} // namespace cq
