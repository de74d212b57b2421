#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace cq {

// A render's own part of the work folder: "Render1", "Render2", ... each held by a lock file for
// as long as a render uses it. Two renders in one application folder (two windows, the window
// and a command-line render) never share pieces, keys or join files; a render that finds its
// usual part taken uses the next free one. A lock left by a process that died is taken over.
class RenderWorkspace {
public:
    static constexpr int kMaxWorkspaces = 8;

    explicit RenderWorkspace(QString workFolder);
    ~RenderWorkspace();

    // Takes the first free part; false with problem() set when none can be had.
    bool acquire();
    void release();

    bool isHeld() const { return m_lock != nullptr; }
    QString folder() const { return m_folder; }
    int number() const { return m_number; }
    QString problem() const { return m_problem; }

private:
    QString m_workFolder;
    QString m_folder;
    QString m_problem;
    std::unique_ptr<QLockFile> m_lock;
    int m_number = 0;
};

} // namespace cq
