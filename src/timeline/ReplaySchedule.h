#pragma once

#include <QList>
#include <QtGlobal>

namespace cq {

// One look at the replay clock: which rows are due, where the replay stands after showing
// them, and whether it is over.
struct ReplayStep {
    QList<int> rowsToShow; // in grid order
    int nextRow = 0;
    bool finished = false;
};

// Rows are shown in grid order, each once the voice has reached its time. Once the voice has
// ended, or Stop was pressed, the rows still waiting are skipped.
ReplayStep NextReplayStep(const QList<qint64>& rowTimesMs, int nextRow, qint64 positionMs,
                          bool voiceEnded, bool stopAll);

} // namespace cq
