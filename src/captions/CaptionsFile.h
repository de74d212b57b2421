#pragma once

#include "captions/CaptionCue.h"
#include "captions/SubtitleFiles.h"

#include <QString>

namespace cq {

// The cues of a project (in its folder) and of the take (in the work folder) are kept as SRT in
// a file of this name.
inline constexpr char kCaptionsFileName[] = "Captions.srt";

// The captions file in the folder.
QString CaptionsFileIn(const QString& folder);

// Writes the cues as SRT, whole; no cues remove the file, so that a message without captions
// leaves none behind. False when the file could not be written or removed.
bool SaveCaptionsFile(const CaptionCues& cues, const QString& fileSpec);

// The cues of the file: none and no problem when there is no file; a file that cannot be read,
// or some of whose cues cannot, gives what was read and names the problem.
ReadCues ReadCaptionsFile(const QString& fileSpec);

} // namespace cq
