#pragma once

#include <QString>

namespace cq {

// What a raw MPEG audio layer II file (the AVI result's sound, made beforehand) really holds,
// read frame by frame from the headers: a file cut short ends inside a frame or before its
// first one.
struct MpegAudioFrames {
    bool complete = false; // every frame whole, from the first byte to the last
    QString problem;       // why not; empty when it is
    qint64 frames = 0;
    qint64 durationMs = -1;
};

MpegAudioFrames ReadMpegAudioFrames(const QString& fileSpec);

} // namespace cq
