#pragma once

#include "library/DisplaySurface.h"
#include "studio/TimelineEvent.h"

#include <QList>

namespace cq {

// The display surface in use before the last logged event, read from the media-type column of
// the event rows (oldest first): Video, Pictures or Text (a Both row is none of them). Going back
// from the last row, the first row of another of those kinds than the last row's decides. Without
// such a row the answer is the video surface.
DisplaySurface RevertToLastView(const QList<MediaKind>& mediaTypes);

} // namespace cq
