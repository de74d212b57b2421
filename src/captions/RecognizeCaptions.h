#pragma once

#include "captions/CaptionCue.h"
#include "platform/ToolLocator.h"

#include <QString>

namespace cq {

struct RecognizedCaptions {
    CaptionCues cues;
    QString problem; // why there are no captions; empty when recognition ran to its end

    bool ok() const { return problem.isEmpty(); }
};

// Captions from the recorded voice, waited for: runs a CaptionRecognitionJob and a local event
// loop until it ends. For the headless command line only; the window starts the job itself.
RecognizedCaptions RecognizeCaptions(const QString& voiceWavFileSpec, const ToolLocation& ffmpeg,
                                     const QString& workFolder);

} // namespace cq
