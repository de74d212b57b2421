#pragma once

#include "studio/EventRow.h"

namespace cq::test {

// An event row as the grid logs it, for timelines built in tests.
inline EventRow Row(int count, const QString& type, const QString& time, const QString& file,
                    const QString& beg = {}) {
    EventRow r;
    r.mediaCount = count;
    r.mediaType = type;
    r.timeLine = time;
    r.fileSpec = file;
    r.begVideoAt = beg;
    return r;
}

} // namespace cq::test
