#pragma once

#include <QByteArray>
#include <QString>

namespace cq {

// Text files of older installations were written in the Western Windows code page; this
// program writes UTF-8. Bytes that are valid UTF-8 are read as UTF-8, any others as
// Windows-1252 (the five bytes that code page leaves undefined stand for the C1 controls of the
// same number, as Windows reads them).
QString DecodeUtf8OrWindows1252(const QByteArray& bytes);

// Windows-1252 only, whatever the bytes.
QString DecodeWindows1252(const QByteArray& bytes);

} // namespace cq
