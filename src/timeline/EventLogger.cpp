#include "timeline/EventLogger.h"

#include "platform/TimeCode.h"
#include "timeline/EventGridModel.h"
#include "timeline/RecordingState.h"
#include "timeline/TimelineClock.h"

namespace cq {

EventLogger::EventLogger(RecordingState& state, EventGridModel& grid, TimelineClock& clock,
                         QObject* parent)
    : QObject(parent), m_state(state), m_grid(grid), m_clock(clock) {}

bool EventLogger::LogMediaEvent(const QString& mediaType, const QString& fileSpec,
                                const QString& begVideoAt, const std::optional<QString>& text) {
    if (!m_state.gblnRecording || m_mediaCount >= kMaxEvents)
        return false;
    EventRow row;
    row.mediaCount = ++m_mediaCount;
    row.mediaType = mediaType;
    row.timeLine = SecondsTextFromMs(m_clock.elapsedMs());
    row.begVideoAt = begVideoAt;
    row.fileSpec = fileSpec;
    row.text = text;
    if (!m_grid.appendRowText(row.rowText())) {
        --m_mediaCount;
        return false;
    }
    emit eventLogged(m_grid.rowCount() - 1);
    return true;
}

void EventLogger::reset() {
    m_mediaCount = 0;
    m_grid.clear();
}

} // namespace cq
