#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// Helpers for replacing a folder's contents so that a crash or a power cut at any moment leaves
// the old contents or the new ones: files are synced to the disk before they are relied on, and
// the folders holding them too (a new name lives in the folder, not in the file).
// Each returns false with *why set to a sentence naming the path when the system refuses.

// Syncs a file, or a folder's list of names, to the disk.
bool SyncPath(const QString& path, QString* why);
// Syncs every file and folder below the folder, then the folder itself.
bool SyncTree(const QString& folder, QString* why);

// Copies a regular file to a new file (an existing target is an error) and syncs the copy.
bool CopyFileSynced(const QString& source, const QString& target, QString* why);

// Carries every entry of the folder from into the folder to, except the top-level names in
// skipNames: files are linked (copied where the file system has no links), subfolders made and
// filled the same way, symbolic links and FIFOs made again. Nothing of from is changed.
bool CarryFolderEntries(const QString& from, const QString& to, const QStringList& skipNames,
                        QString* why);

// Removes from the folder old what is also in the folder now (the same file, or a file with the
// same bytes; the same link; a FIFO), subfolders alike, then old itself when it is empty.
// Returns whether old is gone; what only old holds stays there.
bool RemoveCarriedEntries(const QString& old, const QString& now);

} // namespace cq
