#pragma once

#include "captions/CaptionCue.h"
#include "render/RenderInputs.h"

namespace cq {

struct StudioSettings;

// The captions a render carries when the studio writes them or burns them in: the message's own
// cues (the editor's, a project's Captions.srt), or where it has none the cues of its typed
// texts, each shown until the next event. Without either option the render carries none.
void AddCaptions(RenderInputs& inputs, const StudioSettings& studio, const CaptionCues& ownCues);

} // namespace cq
