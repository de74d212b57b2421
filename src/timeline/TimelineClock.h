#pragma once

#include <QtGlobal>

namespace cq {

// The clock of the current recording: milliseconds of voice captured so far, so that every
// logged item lines up with the recorded voice.
class TimelineClock {
public:
    virtual ~TimelineClock() = default;
    virtual qint64 elapsedMs() = 0;
};

} // namespace cq
