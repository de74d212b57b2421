#pragma once

#include "studio/TimelineEvent.h"

#include <QObject>
#include <QString>

#include <optional>

namespace cq {

class EventGridModel;
class TimelineClock;

// LogMediaEvent: while a recording runs, every item brought on screen becomes one row of the
// event grid, timed by the recording's own clock.
class EventLogger : public QObject {
    Q_OBJECT
public:
    // The media count is a 16-bit counter: a recording holds at most this many events.
    static constexpr int kMaxEvents = 32767;

    EventLogger(EventGridModel& grid, TimelineClock& clock, QObject* parent = nullptr);

    // Appends one row; begVideoAtMs is where a video plays from, text is given for text events
    // only. Returns whether a row was logged. A name or text that no line of the recording's
    // files can keep (see ControlCharacterIn) is refused with eventRefused: the item stays
    // shown, it is only not recorded.
    bool LogMediaEvent(MediaKind mediaType, const QString& fileSpec,
                       std::optional<qint64> begVideoAtMs = std::nullopt,
                       const QString& text = QString());
    // A new recording: the grid back to its header row, the count to 0.
    void reset();
    int mediaCount() const { return m_mediaCount; }
    // A recording runs: what is brought on screen is logged. The recording's controller says so.
    bool isRecording() const { return m_recording; }
    void setRecording(bool recording) { m_recording = recording; }
    EventGridModel& grid() { return m_grid; }

signals:
    void eventLogged(int row);
    void eventRefused(const QString& title, const QString& text);

private:
    EventGridModel& m_grid;
    TimelineClock& m_clock;
    int m_mediaCount = 0;
    bool m_recording = false;
};

} // namespace cq
