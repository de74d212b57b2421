#include "timeline/EventLogger.h"

#include "platform/TextHelpers.h"
#include "platform/TimeText.h"
#include "studio/TimelineFile.h"
#include "timeline/EventGridModel.h"
#include "timeline/TimelineClock.h"

namespace cq {

namespace {

// A name as the user can read it in a message: each control character as a visible mark.
QString visibleControls(QString name) {
    for (QChar& c : name)
        if (IsControlCharacter(c))
            c = QChar(0x2426); // the reverse question mark of the control pictures
    return name;
}

} // namespace

EventLogger::EventLogger(EventGridModel& grid, TimelineClock& clock, QObject* parent)
    : QObject(parent), m_grid(grid), m_clock(clock) {}

bool EventLogger::LogMediaEvent(MediaKind mediaType, const QString& fileSpec,
                                std::optional<qint64> begVideoAtMs, const QString& text) {
    if (!m_recording || m_mediaCount >= kMaxEvents)
        return false;
    if (ControlCharacterIn(fileSpec) || ControlCharacterIn(text)) {
        emit eventRefused(
            QStringLiteral("Recording"),
            QStringLiteral(
                "\"%1\" is shown but was not recorded: its name or text holds a line break, a "
                "tab or another control character, which the recording's files cannot "
                "keep. Rename it to record it.")
                .arg(visibleControls(fileSpec)));
        return false;
    }
    const qint64 atMs = std::max<qint64>(0, m_clock.elapsedMs());
    // Past that no timeline could be read back; no voice of a take is that long.
    if (atMs > kLongestTimeMs)
        return false;
    ++m_mediaCount;
    m_grid.appendRow({mediaType, atMs, begVideoAtMs, fileSpec, text});
    emit eventLogged(m_grid.rowCount() - 1);
    return true;
}

void EventLogger::reset() {
    m_mediaCount = 0;
    m_grid.clear();
}

} // namespace cq
