#pragma once

#include <QStringList>

namespace cq {

// The display surface in use before the last logged event, read from the media-type column of
// the event rows (oldest first): 0 for "Video", 1 for "Pictures", 2 for "Text". Going back from
// the last row, the first row of another of those kinds than the last row's decides. Without
// such a row the answer is 0, the video surface.
int RevertToLastView(const QStringList& mediaTypes);

} // namespace cq
