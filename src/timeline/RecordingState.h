#pragma once

#include <QtGlobal>

namespace cq {

// The state of the current (or last) recording: the recording's controller starts and ends it,
// the logger logs only while it runs, and the render takes the voice's length.
struct RecordingState {
    bool gblnRecording = false;
    // Length of the recorded voice in milliseconds, from the bytes actually captured.
    qint64 recordingLengthMs = 0;
};

} // namespace cq
