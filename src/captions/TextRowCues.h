#pragma once

#include "captions/CaptionCue.h"
#include "studio/TimelineEvent.h"

#include <QList>
#include <QtGlobal>

namespace cq {

// The captions of the text items: each text row's text from the row's time until the next row's
// time, the last until endMs (the end of the recording). Rows without text make no cue, nor does
// a row replaced at its own time; a text too long for one line is wrapped into two.
CaptionCues CuesFromTextRows(const QList<TimelineEvent>& rows, qint64 endMs);

} // namespace cq
