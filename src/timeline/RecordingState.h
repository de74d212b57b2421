#pragma once

#include <QtGlobal>

namespace cq {

// The state of the current (or last) recording, shared by the recorder, the event grid,
// replay, the slide show and render.
struct RecordingState {
    bool gblnRecording = false;
    // Length of the recorded voice in milliseconds, from the bytes actually captured.
    qint64 recordingLengthMs = 0;
    bool gblnStopAll = false; // set by the stop button when nothing records; ends replays
};

} // namespace cq
