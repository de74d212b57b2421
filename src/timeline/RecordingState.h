#pragma once

#include <QDateTime>

namespace cq {

// The state of the current (or last) recording, shared by the recorder, the event grid,
// replay, the slide show and render.
struct RecordingState {
    bool gblnRecording = false;
    QDateTime gdtmRecordingStart;
    QDateTime gdtmRecordingStop;
    // Length of the recorded voice in seconds, from the bytes actually captured.
    double gdblRecordingLength = 0;
    bool gblnStopAll = false; // set by the stop button when nothing records; ends replays
};

} // namespace cq
