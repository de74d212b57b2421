#pragma once

#include <QObject>
#include <QTimer>

namespace cq {

// The one wait of the main window: waits a number of milliseconds while the window keeps
// handling events, and can be released early (the stop button and the slide show do).
// A wait started inside another restarts the same timer, so it ends the outer one too.
class WaitTimer : public QObject {
    Q_OBJECT
public:
    explicit WaitTimer(QObject* parent = nullptr);

    void WaitMilliseconds(int milliseconds);
    // Ends a pending wait at once (sets the fired flag and stops the timer).
    void release();
    bool gblnWaitTimerFired() const { return m_fired; }
    bool isWaiting() const { return m_depth > 0; }

signals:
    void fired();

private:
    QTimer m_tmrWait;
    bool m_fired = true;
    int m_depth = 0;
};

// A wait of its own, for code that does not share the window's timer. No busy loop.
void WaitMilliseconds(int milliseconds);

} // namespace cq
