#pragma once

#include "studio/AppPaths.h"
#include "studio/DirectorySettings.h"

#include <QStringList>

namespace cq {

struct XdgFolders {
    QString videos, music, pictures;
    static XdgFolders fromDesktop(); // QStandardPaths' Movies, Music and Pictures locations
};

// The part of start-up that needs no window: the work folders in their order, the directory
// settings in their order, the projects folder, and the text list (written with the default
// texts when missing), and the removal of what tools of a killed studio left in the work folders.
// What went wrong is collected as sentences for the user; start-up goes on.
struct WindowlessStartup {
    // A render without a window makes no folder it does not write into: not the projects folder
    // below the user's videos, nor the window's own work folders.
    enum class Use { Studio, Render };

    AppPaths paths;
    DirectorySettings settings;
    QStringList textList;
    QStringList problems;

    static WindowlessStartup run(const QString& appFolder, const XdgFolders& xdg,
                                 Use use = Use::Studio);
    static void removeLeftToolFolders(const AppPaths& paths);
};

} // namespace cq
