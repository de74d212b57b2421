#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// The display that was in use before the last logged event, read from the grid's media type
// column (first event first): 0 "Video", 1 "Pictures", 2 "Text". The rows are read from the
// last one back, looking for one of the two words other than the last row's; 0 when none is.
int RevertToLastView(const QStringList& mediaTypes);

// A text as it is logged: line breaks removed (CR LF pairs, then any lone CR or LF) and tabs
// made blanks, so that it stays one field of one row.
QString TextForEventRow(const QString& text);
// The file name of a text item's picture in the work folder: the logged text cut to its
// first 50 characters, kept to file-name characters, with ".jpg" appended.
QString TextPictureFileName(const QString& text);

} // namespace cq
