#pragma once

#include "studio/TimelineEvent.h"

namespace cq::test {

// An event as the grid logs it, for timelines built in tests.
inline TimelineEvent Event(MediaKind kind, qint64 atMs, const QString& file,
                           std::optional<qint64> startMs = std::nullopt,
                           const QString& text = QString()) {
    return {kind, atMs, startMs, file, text};
}

} // namespace cq::test
