#pragma once

#include "render/RenderInputs.h"
#include "studio/StudioSettings.h"
#include "studio/TimelineEvent.h"

#include <QList>
#include <QSize>
#include <QString>

#include <optional>

namespace cq {

struct AppPaths;

// The frame size the user typed, "320X240": digits, "X" or "x", digits, nothing else (no blanks,
// no line ends), both even and from 16 to 4096. An invalid size for anything else.
QSize ParseFrameSize(const QString& gstrVideoRes);
// What is wrong with a size that ParseFrameSize refuses, for the user.
QString FrameSizeProblem(const QString& gstrVideoRes);
// "29.97" is NTSC's 30000/1001, which ffmpeg would take literally as 2997/100: converting
// between the two drops or duplicates frames. Another rate counts when it is a plain number or
// fraction; anything else is NTSC, so no text of the user's reaches ffmpeg as a rate.
FrameRate ParseFrameRate(const QString& gstrFrameRate);

// ffprobe, found as the installation check finds it, so that the check sees what the render uses.
QString LocateFfprobe(const AppPaths& paths);

// The format an output file asks for by its extension, .avi or .mp4 in any case; nothing for
// any other name.
std::optional<RenderFormat> RenderFormatOfFile(const QString& output);

// A render of the studio's work folder: the application's paths and tools, the typed size and
// rate converted, the rows and the voice. Refused, before anything runs, when the size is no
// frame size or the output names no format a render makes. An empty output means the studio's
// format in the work folder (FinalMix.avi or FinalMix.mp4), or FinalMix.mp3 for a recording
// without events; a given output picks its format by its extension.
RenderRequest StudioRenderRequest(const AppPaths& paths, const StudioSettings& studio,
                                  const QList<TimelineEvent>& rows, const QString& voiceFile,
                                  qint64 recordingMs, const QString& output);

} // namespace cq
