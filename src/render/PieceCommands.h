#pragma once

#include "platform/ToolCommand.h"
#include "render/RenderPlan.h"

#include <QList>

namespace cq {

// The ffmpeg command of one run that makes one or several pieces, each its own file (the partial
// file of its segment). Several pieces in one run save the tool's start-up for every piece but
// the first; the pieces of one video share one decoding of it.
ToolCommand PieceRunCommand(const RenderInputs& in, const QList<RenderSegment>& segments);

// The command that makes a segment's piece as black for its length: the stand-in for an item
// that could not be rendered, so that everything after it keeps its place.
ToolCommand StandInCommand(const RenderInputs& in, const RenderSegment& segment);

} // namespace cq
