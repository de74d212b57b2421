#pragma once

#include <QObject>
#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace cq {

// Syncs a file to the disk on a thread of its own, so that a slow disk never holds up the thread
// that writes the file (the window's, which also drains the microphone). It follows a duplicate
// of the file's descriptor: the file may be closed while a sync of it is still running.
// Failures come back on the owner's thread by syncFailed.
class FileSyncer : public QObject {
    Q_OBJECT
public:
    // What does the sync; fdatasync or fsync unless a test puts in its own. Returns 0 or -1 with
    // errno set, as they do.
    using SyncFunction = std::function<int(int fd)>;

    // dataOnly: fdatasync (the file's length and bytes), else fsync (all of it).
    explicit FileSyncer(bool dataOnly, QObject* parent = nullptr);
    // Lets the syncs asked for end first: the file is on the disk when the owner goes.
    ~FileSyncer() override;
    FileSyncer(const FileSyncer&) = delete;
    FileSyncer& operator=(const FileSyncer&) = delete;

    // Follows this open file from now on, letting the one followed before go after its last
    // sync. False with *why set when the descriptor cannot be duplicated.
    bool follow(int fd, QString* why);
    // Asks for a sync of the followed file and returns at once. Asks made while one waits are
    // served by that one.
    void requestSync();
    // One last sync of the followed file, then it is let go; returns at once.
    void release();
    // Whether a sync is asked for or running.
    bool isBusy() const;

    void setSyncFunction(SyncFunction sync);

signals:
    void syncFailed(const QString& why);
    // A sync ended well.
    void synced();

private:
    struct Job {
        int fd;
        bool closeAfter;
    };
    void run();
    void report(int result, int error);

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Job> m_jobs;
    SyncFunction m_sync;
    int m_fd = -1;
    bool m_running = false;
    bool m_stopping = false;
    std::thread m_thread;
};

} // namespace cq
