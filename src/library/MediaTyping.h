#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// The characters after the last "." of the whole text; a text without a dot is returned whole.
QString GetFileExtension(const QString& fileSpec);
// "Video", "Audio", "Pictures" by the lower-cased extension, or "" for anything else.
QString GetMediaTypeFromFileSpec(const QString& fileSpec);
// What the browser's file lists show (matched without regard to case).
const QStringList& MediaFilePatterns();

} // namespace cq
