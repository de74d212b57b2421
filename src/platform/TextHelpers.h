#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace cq {

// The pieces between separators, in order, empty pieces skipped.
QStringList SplitToArrayNonEmpty(const QString& text, const QString& separator);

// Keeps A-Z, a-z, 0-9 and the characters of " _-+()".
QString CleanFileName(const QString& text);
QString GetDigitsOnly(const QString& text);

// Every byte b becomes 255 - b; its own inverse. Works on the UTF-8 bytes of a text file.
QByteArray InvertCharacters(const QByteArray& bytes);

// A character no line of a text file can hold as it is: a line break, a tab, NUL and the other
// controls.
inline bool IsControlCharacter(QChar c) {
    return c.category() == QChar::Other_Control;
}

// Removes every CR LF pair, repeating until none is left.
QString RemoveLineBreaks(QString text);

} // namespace cq
