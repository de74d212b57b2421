#pragma once

#include "captions/CaptionCue.h"
#include "render/RenderInputs.h"
#include "studio/TimelineEvent.h"

#include <QList>

namespace cq {

struct StudioSettings;

// The captions a render carries when the studio writes them or burns them in: the message's own
// cues (the editor's, a project's Captions.srt), or where it has none the cues of its typed
// texts, each shown until the next event. Without either option the render carries none. A cue
// too long to show is shortened, and the render's report says which.
void AddCaptions(RenderInputs& inputs, const StudioSettings& studio, const CaptionCues& ownCues);

// The captions made for a message from its voice: the recognised cues and the cues of its typed
// texts together, in the order of their starts (a text shown at the same time as a spoken cue
// comes after it).
CaptionCues VoiceAndTextCues(const CaptionCues& voice, const QList<TimelineEvent>& rows,
                             qint64 recordingMs);

} // namespace cq
