#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace cq {

// Pieces between separators, in order; empty pieces kept / skipped.
QStringList SplitToArray(const QString& text, const QString& separator);
QStringList SplitToArrayNonEmpty(const QString& text, const QString& separator);

// Keeps A-Z, a-z, 0-9 and the characters of " _-+()".
QString CleanFileName(const QString& text);
QString GetLettersOnly(const QString& text);
QString GetDigitsOnly(const QString& text);

// Every byte b becomes 255 - b; its own inverse. Works on the UTF-8 bytes of a text file.
QByteArray InvertCharacters(const QByteArray& bytes);

// The text after the last "/", "\" or ":"; empty if there is none.
QString GetFileNameFromPath(const QString& path);
// The text before the last "."; the whole text if there is no dot.
QString GetFileSpecWithoutExtension(const QString& path);
// The file's length in bytes, 0 when it does not exist.
qint64 GetFileLengthIfExists(const QString& path);
// Removes every CR LF pair, repeating until none is left.
QString RemoveLineBreaks(QString text);

} // namespace cq
