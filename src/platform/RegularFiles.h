#pragma once

#include <QString>

namespace cq {

// What stands at a path, after following links. Tools and listings take only regular files:
// a FIFO blocks its reader for good, a device such as /dev/zero never ends, a folder is no
// picture.
enum class FileKind { Missing, Regular, Folder, Fifo, Socket, Device, Other };

FileKind KindOfFile(const QString& path);
bool IsRegularFile(const QString& path);

// Empty for a regular file; else what the path is, as words for a message ("a FIFO",
// "a link that leads nowhere", "missing").
QString WhyNotARegularFile(const QString& path);

} // namespace cq
