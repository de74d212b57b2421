#pragma once

#include <QObject>
#include <QTimer>

namespace cq {

class EventGridModel;
class MediaDisplay;
class VoicePlayer;

// cmdPlayVoiceEmail: a rough draft of the last recording. The recorded voice plays and every
// row of the event grid comes on screen when the voice reaches its time, until the end or
// Stop. A timer looks at the voice's position; the window stays free between looks.
class Replay : public QObject {
    Q_OBJECT
public:
    static constexpr int kTickMs = 20;

    Replay(EventGridModel& grid, MediaDisplay& display, VoicePlayer& voice,
           QObject* parent = nullptr);

    // Starts a replay of the voice file; false when a replay already runs.
    bool start(const QString& voiceFileSpec);
    // Stop pressed: no further row is shown, the voice stops.
    void stop();
    bool isRunning() const { return m_running; }
    // One look at the clock (the timer calls it; tests may too).
    void tick();

signals:
    void rowShown(int row);
    void finished();

private:
    void showRow(int row);
    void finish();

    EventGridModel& m_grid;
    MediaDisplay& m_display;
    VoicePlayer& m_voice;
    QTimer m_timer;
    int m_nextRow = 0;
    bool m_rowsDone = false;
    bool m_running = false;
    bool m_gblnStopAll = false; // Stop was pressed: no further row is shown
};

} // namespace cq
