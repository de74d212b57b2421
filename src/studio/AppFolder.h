#pragma once

#include <QString>

namespace cq {

// Where the studio keeps its application folder, and how a new one is filled.
struct AppFolderChoice {
    QString folder;  // the application folder to use; empty when none could be had
    QString problem; // a sentence for the user when the folder is unusable
};

// requested: the --app-dir folder, or empty. installFolder: the executable's folder, which holds
// the installed System, SystemMedia and SystemMediaGen folders. fallbackFolder: where to go when
// the installation folder is not writable ($XDG_DATA_HOME/Clipquill).
// A chosen folder that lacks one of the System folders gets it copied from the installation.
AppFolderChoice ChooseAppFolder(const QString& requested, const QString& installFolder,
                                const QString& fallbackFolder);

// Copies each of System, SystemMedia and SystemMediaGen that the target lacks; symbolic links
// (the tool links) are made again as links. Returns false when a copy failed.
bool SeedAppFolder(const QString& installFolder, const QString& target);

// $XDG_DATA_HOME/Clipquill (normally ~/.local/share/Clipquill).
QString DefaultFallbackAppFolder();

bool IsWritableFolder(const QString& folder);

} // namespace cq
