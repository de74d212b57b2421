#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// A folder and a name in it, with one "/" between them.
QString JoinPath(const QString& folder, const QString& name);

// Whether the folder exists and its entries can be listed.
bool IsReadableFolder(const QString& folder);

// The regular files of a folder (after following links: a link to a device, a FIFO, a socket or
// a folder is left out) whose names match the patterns, without regard to case, sorted by name.
// Names only; nothing is opened or probed, so large folders list quickly.
QStringList ListRegularFiles(const QString& folder, const QStringList& patterns);

// The regular files of a folder that match the media file patterns.
QStringList ListMediaFiles(const QString& folder);

// The subfolders of a folder (hidden ones left out), sorted by name.
QStringList ListSubfolders(const QString& folder);

// The folder above; the folder itself for the root.
QString ParentFolder(const QString& folder);

} // namespace cq
