#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace cq {

// One studio per application folder: the studio holds a lock file in the folder while it runs.
// A lock whose studio is gone (killed, crashed) is taken over; the render from the command line
// takes no lock, as it works in a render folder of its own.
class StudioFolderLock {
public:
    static constexpr char kLockFileName[] = "clipquill.lock";

    explicit StudioFolderLock(const QString& appFolder);

    // True when this studio now holds the folder; otherwise problem() says why not.
    bool tryLock();
    QString problem() const { return m_problem; }

private:
    QString m_appFolder;
    std::unique_ptr<QLockFile> m_lock;
    QString m_problem;
};

} // namespace cq
