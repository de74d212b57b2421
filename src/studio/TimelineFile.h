#pragma once

#include "studio/TimelineEvent.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace cq {

// The text form of the events, the only one: Timeline.txt and the take's journal hold one event
// a line, tab-separated: its number, its kind's word, its time and a video's start position in
// seconds ("65.000"), the file, and for a text event the text. CR LF line ends, no header. A
// relative file path is relative to the folder of the file. Files edited by hand are read too:
// LF or CR line ends, any encoding DecodeOutsideText reads, and times with other numbers of
// decimals.
struct TimelineReadResult {
    QList<TimelineEvent> rows;
    QString error; // "line 3: ..." for the first bad line; empty when all is well
    bool ok() const { return error.isEmpty(); }
};

// The word the grid and the files name a kind with: "Video", "Pictures", "Text", "Both", "Audio",
// and the empty word for an untyped file.
QString MediaKindWord(MediaKind kind);
// The seconds text of a time, as the files and the grid write it: "65.000".
QString EventSecondsText(qint64 ms);

// Whether a file name or text holds a character no line can keep: a tab, a line end or any
// other control character.
bool ControlCharacterIn(const QString& field);

// The line of the event numbered `number` (from 1), without its line end. A character no line
// can keep is written as U+FFFD: callers that log events refuse such names before they get here.
// A file inside baseFolder is written relative to it, so the folder can move as a whole.
QString TimelineLine(const TimelineEvent& event, int number, const QString& baseFolder);
// One line; a relative file path is made absolute against baseFolder. On failure returns nothing
// and says why in *error.
std::optional<TimelineEvent> ParseTimelineLine(const QString& line, const QString& baseFolder,
                                               QString* error);

// The text of a timeline file; empty with *error saying what is wrong when the bytes are not
// text (binary).
QString DecodeTimelineBytes(const QByteArray& bytes, QString* error);
TimelineReadResult ParseTimelineText(const QString& text, const QString& baseFolder);
// The rows of a timeline file's bytes, its relative paths taken from baseFolder.
TimelineReadResult ReadTimelineBytes(const QByteArray& bytes, const QString& baseFolder);
TimelineReadResult ReadTimelineFile(const QString& fileSpec);

QString TimelineText(const QList<TimelineEvent>& rows, const QString& baseFolder);
bool WriteTimelineFile(const QList<TimelineEvent>& rows, const QString& fileSpec);

} // namespace cq
