#pragma once

#include "studio/TimelineEvent.h"

#include <QString>
#include <QStringList>

namespace cq {

// The characters after the last "." of the whole text; a text without a dot is returned whole.
QString GetFileExtension(const QString& fileSpec);
// Video, Audio or Pictures by the extension (case ignored), or Untyped for anything else.
MediaKind GetMediaTypeFromFileSpec(const QString& fileSpec);
// What the browser's file lists show (matched without regard to case): every typed extension,
// and MIDI files, which have no kind.
const QStringList& MediaFilePatterns();

} // namespace cq
