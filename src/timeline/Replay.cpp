#include "timeline/Replay.h"

#include "timeline/EventGridModel.h"
#include "timeline/MediaDisplay.h"
#include "timeline/ReplaySchedule.h"
#include "timeline/VoicePlayer.h"

namespace cq {

Replay::Replay(EventGridModel& grid, MediaDisplay& display, VoicePlayer& voice, QObject* parent)
    : QObject(parent), m_grid(grid), m_display(display), m_voice(voice) {
    m_timer.setInterval(kTickMs);
    connect(&m_timer, &QTimer::timeout, this, &Replay::tick);
}

bool Replay::start(const QString& voiceFileSpec) {
    if (m_running)
        return false;
    m_gblnStopAll = false;
    m_running = true;
    m_rowsDone = false;
    m_nextRow = 0;
    m_voice.play(voiceFileSpec);
    m_display.setVideoMuted(true);
    m_display.clearDisplay();
    m_timer.start();
    tick();
    return true;
}

void Replay::stop() {
    if (!m_running)
        return;
    m_gblnStopAll = true;
    m_voice.stop();
    tick();
}

void Replay::tick() {
    if (!m_running)
        return;
    const bool ended = m_voice.hasEnded();
    if (!m_rowsDone) {
        QList<qint64> times;
        times.reserve(m_grid.rowCount());
        for (const TimelineEvent& r : m_grid.rows())
            times << r.atMs;
        const ReplayStep step =
            NextReplayStep(times, m_nextRow, m_voice.positionMs(), ended, m_gblnStopAll);
        m_nextRow = step.nextRow;
        for (int row : step.rowsToShow) {
            showRow(row);
            if (!m_running)
                return;
        }
        m_rowsDone = step.finished;
    }
    // The voice plays on after the last row; the replay is over when it ends.
    if (ended || m_gblnStopAll)
        finish();
}

void Replay::showRow(int row) {
    const TimelineEvent& r = m_grid.row(row);
    if (r.kind == MediaKind::Pictures) {
        m_display.showPicture(r.file);
    } else if (r.kind == MediaKind::Video) {
        m_display.showVideo(r.file, r.startMs.value_or(-1));
    } else if (r.isText()) {
        m_display.showText(r.text, false);
    }
    emit rowShown(row);
}

void Replay::finish() {
    m_timer.stop();
    m_running = false;
    // A video ends with the voice.
    m_display.stopVideo();
    m_display.setVideoMuted(false);
    emit finished();
}

} // namespace cq
