#pragma once

#include "studio/StudioSettings.h"

#include <QString>

namespace cq {

struct AppPaths;

// The file Render writes a video of a format to, in the work folder.
QString FinalMixFileSpec(const AppPaths& paths, RenderFormat format);

// The video result the user made last: the newer of FinalMix.avi and FinalMix.mp4, as playing,
// saving, mailing and converting it should find it; FinalMix.avi when there is neither, so that
// a message about the missing result names the usual file.
QString LatestFinalMix(const AppPaths& paths);

} // namespace cq
