#pragma once

#include "captions/CaptionCue.h"
#include "studio/EventRow.h"

#include <QList>

namespace cq {

// The message's typed texts as cues: each "Text" or "Both" row's text shows from its time until
// the next row's time, the last until endMs. Rows without a text or a usable time give none.
CaptionCues CuesFromTextRows(const QList<EventRow>& rows, qint64 endMs);

} // namespace cq
