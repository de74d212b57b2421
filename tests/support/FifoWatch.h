#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cq::test {

// FIFOs where the program expects files, and a watch that tells whether anything opened one
// to read it. Such a reader would wait for a writer for good; the watch plays the writer for
// an instant, so the reader gets an empty file instead of hanging the test, and notes the name.
class FifoWatch {
public:
    ~FifoWatch() { stop(); }

    bool make(const QString& path) {
        if (::mkfifo(path.toLocal8Bit().constData(), 0644) != 0)
            return false;
        m_paths << path;
        return true;
    }

    void start() {
        m_thread = std::thread([this] {
            while (!m_stop) {
                for (const QString& path : m_paths) {
                    // Opening to write without blocking succeeds only while a reader waits.
                    const int fd = ::open(path.toLocal8Bit().constData(), O_WRONLY | O_NONBLOCK);
                    if (fd < 0)
                        continue;
                    ::close(fd);
                    const std::lock_guard<std::mutex> lock(m_mutex);
                    if (!m_opened.contains(path))
                        m_opened << path;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        });
    }

    // Stops the watch; the FIFOs that something opened to read.
    QStringList stop() {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_opened;
    }

private:
    QStringList m_paths;
    QStringList m_opened;
    std::mutex m_mutex;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace cq::test
