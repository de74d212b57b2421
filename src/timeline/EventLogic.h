#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// A text as it is logged: line breaks and other control characters removed, tabs made blanks,
// so that it stays one field of one row.
QString TextForEvent(const QString& text);
// The file name of a text item's picture in the work folder: the logged text cut to its
// first 50 characters, kept to file-name characters, with ".jpg" appended.
QString TextPictureFileName(const QString& text);

} // namespace cq
