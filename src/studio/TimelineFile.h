#pragma once

#include "studio/EventRow.h"

#include <QList>
#include <QString>

namespace cq {

// Timeline.txt: the event rows, one per line, each exactly the grid's row text, CR LF line
// ends, no header. A relative file path is relative to the folder of the file.
struct TimelineReadResult {
    QList<EventRow> rows;
    QString error; // "line 3: ..." for the first bad line; empty when all is well
    bool ok() const { return error.isEmpty(); }
};

TimelineReadResult ParseTimelineText(const QString& text, const QString& baseFolder);
TimelineReadResult ReadTimelineFile(const QString& fileSpec);

// Paths inside baseFolder are written relative to it, so the folder can move as a whole.
QString TimelineText(const QList<EventRow>& rows, const QString& baseFolder);
bool WriteTimelineFile(const QList<EventRow>& rows, const QString& fileSpec);

} // namespace cq
