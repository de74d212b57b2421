#include "timeline/ReplaySchedule.h"

#include <algorithm>

namespace cq {

ReplayStep NextReplayStep(const QList<qint64>& rowTimesMs, int nextRow, qint64 positionMs,
                          bool voiceEnded, bool stopAll) {
    ReplayStep step;
    const int count = static_cast<int>(rowTimesMs.size());
    step.nextRow = std::clamp(nextRow, 0, count);
    if (stopAll) {
        step.nextRow = count;
        step.finished = true;
        return step;
    }
    // In grid order: a row is due once the voice has reached its time.
    while (step.nextRow < count && rowTimesMs[step.nextRow] <= positionMs)
        step.rowsToShow << step.nextRow++;
    if (voiceEnded)
        step.nextRow = count;
    step.finished = step.nextRow >= count;
    return step;
}

} // namespace cq
