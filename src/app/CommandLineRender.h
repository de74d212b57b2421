#pragma once

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

// Renders a timeline file without a window, with the same job as the Render button. Progress
// goes to err, the result's path to out. Returns 0 only when the result exists and its length
// matches the voice; 1 when the render failed, 2 when the inputs are unusable.
int RunCommandLineRender(const AppPaths& paths, StudioSettings studio,
                         const CommandLineRenderOptions& options, FILE* out, FILE* err);

} // namespace cq
