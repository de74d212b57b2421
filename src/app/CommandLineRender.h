#pragma once

#include "render/RenderInputs.h"

#include <QString>

#include <cstdio>

namespace cq {

struct AppPaths;
struct StudioSettings;

struct CommandLineRenderOptions {
    QString timeline; // Timeline.txt
    QString voice;    // empty: RecordedAudio.wav beside the timeline
    QString size;     // empty: "320X240"
    QString output;   // empty: the work folder's FinalMix.avi; X.mp4 makes an MP4
};

// What a render of a timeline file without a window renders: its rows, the voice (given or
// beside it), the size and output asked for and, when the studio settings ask for captions, the
// Captions.srt beside the timeline (what of it cannot be read is said on err) or else the words
// recognised in the voice with the cues of its texts; recognition blocks until it ends. Not ok()
// when the timeline or the voice is unusable.
RenderRequest CommandLineRenderRequest(const AppPaths& paths, StudioSettings studio,
                                       const CommandLineRenderOptions& options, FILE* err);

// Renders a timeline file without a window, with the same job as the Render button. Progress
// goes to err, the result's path to out. Returns 0 only when the result exists and its length
// matches the voice; 1 when the render failed, 2 when the inputs are unusable.
int RunCommandLineRender(const AppPaths& paths, const StudioSettings& studio,
                         const CommandLineRenderOptions& options, FILE* out, FILE* err);

} // namespace cq
