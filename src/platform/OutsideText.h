#pragma once

#include <QByteArray>
#include <QString>

namespace cq {

// The one decoder of text files that come from outside the studio, or that a user may have
// edited: the timeline, subtitles, the journal's lines, settings and lists.
//
// - UTF-8, with or without a byte-order mark;
// - UTF-16, little or big endian, with a byte-order mark, or without one when the bytes look
//   like it (text of the Latin range leaves every other byte zero);
// - anything else that is not valid UTF-8 is read as Windows-1252, the code page older editors
//   on Windows save in; its Latin-1 part covers every other byte.
struct OutsideText {
    QString text;
    // Empty when the bytes are text; else why they are not, to follow "the file" or "the line"
    // (zero bytes outside UTF-16 mark a binary file, which no reader should take for text).
    QString problem;
    bool ok() const { return problem.isEmpty(); }
};

OutsideText DecodeOutsideText(const QByteArray& bytes);

} // namespace cq
