#include "render/RenderWorkspace.h"

#include <QDir>

namespace cq {

RenderWorkspace::RenderWorkspace(QString workFolder) : m_workFolder(std::move(workFolder)) {}

RenderWorkspace::~RenderWorkspace() {
    release();
}

bool RenderWorkspace::acquire() {
    release();
    if (!QDir().mkpath(m_workFolder)) {
        m_problem = QStringLiteral("The work folder \"%1\" cannot be created.").arg(m_workFolder);
        return false;
    }
    for (int n = 1; n <= kMaxWorkspaces; ++n) {
        auto lock =
            std::make_unique<QLockFile>(m_workFolder + QStringLiteral("/Render%1.lock").arg(n));
        // A lock whose owner died is taken over at once; a living owner keeps it for a day.
        constexpr int kLivingOwnersHoldMs = 24 * 3600 * 1000;
        lock->setStaleLockTime(kLivingOwnersHoldMs);
        if (!lock->tryLock(0))
            continue;
        const QString folder = m_workFolder + QStringLiteral("/Render%1").arg(n);
        if (!QDir().mkpath(folder)) {
            m_problem = QStringLiteral("The folder \"%1\" cannot be created.").arg(folder);
            return false;
        }
        m_lock = std::move(lock);
        m_folder = folder;
        m_number = n;
        m_problem.clear();
        return true;
    }
    m_problem = QStringLiteral("%1 other renders are running in \"%2\"; wait until one of them "
                               "has finished.")
                    .arg(kMaxWorkspaces)
                    .arg(m_workFolder);
    return false;
}

void RenderWorkspace::release() {
    if (m_lock)
        m_lock->unlock();
    m_lock.reset();
}

} // namespace cq
