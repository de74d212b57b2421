#pragma once

#include <QString>

namespace cq {

// What a render needs to know of a media file from ffmpeg's description of it (what ffmpeg
// writes to stderr when given an input and no output).
struct MediaFileInfo {
    bool hasAudio = false; // a sound stream with a named codec
};

// Never fails: text without a sound stream's line says there is none.
MediaFileInfo GetFileInfoVars(const QString& probeText);

} // namespace cq
