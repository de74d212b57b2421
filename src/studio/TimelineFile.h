#pragma once

#include "studio/EventRow.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace cq {

// Timeline.txt: the event rows, one per line, each exactly the grid's row text, CR LF line
// ends, no header. A relative file path is relative to the folder of the file. Files edited by
// hand are read too: LF or CR line ends, and any encoding DecodeOutsideText reads.
struct TimelineReadResult {
    QList<EventRow> rows;
    QString error; // "line 3: ..." for the first bad line; empty when all is well
    bool ok() const { return error.isEmpty(); }
};

// The text of a timeline file; empty with *error saying what is wrong when the bytes are not
// text (binary).
QString DecodeTimelineBytes(const QByteArray& bytes, QString* error);
// One line of a timeline; a relative file path is made absolute against baseFolder. On failure
// returns nothing and says why in *error.
std::optional<EventRow> ParseTimelineLine(const QString& line, const QString& baseFolder,
                                          QString* error);
TimelineReadResult ParseTimelineText(const QString& text, const QString& baseFolder);
// The rows of a timeline file's bytes, its relative paths taken from baseFolder.
TimelineReadResult ReadTimelineBytes(const QByteArray& bytes, const QString& baseFolder);
TimelineReadResult ReadTimelineFile(const QString& fileSpec);

// Paths inside baseFolder are written relative to it, so the folder can move as a whole.
QString TimelineText(const QList<EventRow>& rows, const QString& baseFolder);
bool WriteTimelineFile(const QList<EventRow>& rows, const QString& fileSpec);

} // namespace cq
