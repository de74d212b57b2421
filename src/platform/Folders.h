#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// Trims the path and creates every missing folder along it. Returns whether the whole path
// exists as a folder afterwards; a failure leaves the folders made so far.
bool MakeFolderPath(const QString& path);

// Where a file written or renamed to this path lands: absolute, the links of its folders resolved,
// its own name kept (a rename replaces a link there, not what it leads to). Folders that do not
// exist yet are kept as written below the deepest one that does.
QString LandingPath(const QString& path);
// What reading the path reads: the file a link leads to when it exists, else LandingPath.
QString ReadPath(const QString& path);

// The account's home folder stands in for HOME when HOME is unset or empty: the desktop's folders
// and the studio's data folder are found below it, never at the root.
void TakeHomeFromAccountWhenUnset();

} // namespace cq

namespace cq {

// Deletes every file directly in the folder (not its subfolders) but those named in keepNames;
// the folder stays. Returns how many files could not be deleted.
int DeleteFilesInFolder(const QString& folder, const QStringList& keepNames = {});

} // namespace cq
