#pragma once

#include <QString>

namespace cq {

// What a piece file really holds, read from its chunks rather than its header: the header's
// frame count is written before the frames and stays when the file is cut short.
struct AviContents {
    bool complete = false; // the RIFF sizes match the file and every chunk is whole
    qint64 videoFrames = 0;
    QString problem; // why the file is not complete; empty when it is

    bool holds(qint64 frames) const { return complete && videoFrames == frames; }
};

// Walks the RIFF chunks of an AVI file and counts the video frames of its movi lists.
AviContents ReadAviContents(const QString& fileSpec);

} // namespace cq
