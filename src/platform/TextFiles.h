#pragma once

#include <QByteArray>
#include <QString>

namespace cq {

// Every text file the program writes is written whole, replacing the old one, and ends with
// one CR LF after the text. Text is stored as UTF-8. Writes go through a temporary file and
// a rename, so a failure never leaves half a file behind.

// Returns false (and writes nothing) when the path is blank after trimming or the write fails.
bool SaveTextToFile(const QString& text, const QString& fileSpec);
// The same for text that is already bytes (inverted files); still appends the plain CR LF.
bool SaveBytesToFile(const QByteArray& bytes, const QString& fileSpec);
// Writes exactly these bytes, nothing appended.
bool WriteWholeFile(const QByteArray& bytes, const QString& fileSpec);

// The whole file; empty for an empty path or a file that cannot be read. Only regular files are
// read: a FIFO without a writer would block the reader for good, a device might never end.
QString ReadFileToString(const QString& fileSpec);
// At most maxBytes of it when maxBytes is not negative: a file from outside cannot make the
// studio hold more than it will ever read.
QByteArray ReadFileToBytes(const QString& fileSpec, qint64 maxBytes = -1);

// A sentence for the user when something that is not a regular file (a FIFO, a device, a
// folder) stands where the program expects a file; empty for a regular or a missing file.
QString NotARegularFileProblem(const QString& fileSpec);

} // namespace cq
