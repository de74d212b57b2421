#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// Trims the path and creates every missing folder along it. Returns whether the whole path
// exists as a folder afterwards; a failure leaves the folders made so far.
bool MakeFolderPath(const QString& path);

} // namespace cq

namespace cq {

// Deletes every file directly in the folder (not its subfolders) but those named in keepNames;
// the folder stays. Returns how many files could not be deleted.
int DeleteFilesInFolder(const QString& folder, const QStringList& keepNames = {});

} // namespace cq
