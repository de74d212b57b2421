#pragma once

#include "render/SegmentBuilders.h"

#include <QString>

namespace cq {

// Writes the bitmap files of a still-picture segment: the bitmap copy of the picture (unless it
// is a BMP already) and the fitted frame, the picture centred on a black 4:3 canvas. A canvas
// that is not the picture itself is also left in blackBitmap, as the studio always did.
// Returns false, with the reason in *error, when the picture cannot be read or a file written.
bool PrepareFittedFrame(const QString& picture, const PicSegment& segment,
                        const QString& blackBitmap, QString* error = nullptr);

} // namespace cq
