#pragma once

#include <QString>

namespace cq {

enum class FolderExchange { Exchanged, NotSupported, Failed };

// Swaps the names of two folders (or files) of one file system in one step: whoever looks sees
// either both old names or both new ones. NotSupported when the file system or the kernel
// cannot (EINVAL, ENOSYS); Failed with *why set for any other refusal.
FolderExchange ExchangePaths(const QString& a, const QString& b, QString* why);

// Renames a folder; false with *why set when the system refuses.
bool RenameFolder(const QString& from, const QString& to, QString* why);

} // namespace cq
