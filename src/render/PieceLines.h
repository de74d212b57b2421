#pragma once

#include "render/RenderPlan.h"

#include <QList>
#include <QString>

namespace cq {

// The ffmpeg line of one run that makes one or several pieces, each its own file (the partial
// file of its segment). Several pieces in one run save the tool's start-up for every piece but
// the first; the pieces of one video share one decoding of it.
QString PieceRunLine(const RenderInputs& in, const QList<RenderSegment>& segments);

// The line that makes a segment's piece as black for its length: the stand-in for an item that
// could not be rendered, so that everything after it keeps its place.
QString StandInLine(const RenderInputs& in, const RenderSegment& segment);

} // namespace cq
