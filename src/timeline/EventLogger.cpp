#include "timeline/EventLogger.h"

#include "platform/TextHelpers.h"
#include "platform/TimeCode.h"
#include "studio/EventRow.h"
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

bool EventLogger::LogMediaEvent(const QString& mediaType, const QString& fileSpec,
                                const QString& begVideoAt, const std::optional<QString>& text) {
    if (!m_recording || m_mediaCount >= kMaxEvents)
        return false;
    if (EventRow::controlCharacterIn(fileSpec) || (text && EventRow::controlCharacterIn(*text))) {
        emit eventRefused(
            QStringLiteral("Recording"),
            QStringLiteral(
                "\"%1\" is shown but was not recorded: its name or text holds a line break, a "
                "tab or another control character, which the recording's files cannot "
                "keep. Rename it to record it.")
                .arg(visibleControls(fileSpec)));
        return false;
    }
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
