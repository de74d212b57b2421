#pragma once

#include <QString>

namespace cq {

// What a render needs to know of a media file from ffmpeg's description of it (what ffmpeg
// writes to stderr when given an input and no output).
struct MediaFileInfo {
    bool hasAudio = false;  // a sound stream with a named codec
    qint64 durationMs = -1; // -1 when ffmpeg gave no length
};

// Never fails: text without a sound stream's line says there is none. fileName: the input as
// ffmpeg was given it, which its description repeats ("from 'NAME':"); taken out there first, so
// that no name, however it is made, can pass for a line of the description.
MediaFileInfo GetFileInfoVars(const QString& probeText, const QString& fileName = {});

} // namespace cq
