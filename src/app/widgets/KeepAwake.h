#pragma once

#include <QObject>
#include <QTimer>

namespace cq {

class ToolRunner;

// Keeps the screen saver away while the studio records or plays: every 50 s it tells the
// desktop the user is active (xdg-screensaver reset). Never complains when it cannot.
class KeepAwake : public QObject {
    Q_OBJECT
public:
    explicit KeepAwake(QObject* parent = nullptr);

    QTimer& tmrMoveMouseToPreventScreenSaver() { return m_timer; }

private:
    // Under the shortest delay a screen saver can be set to: a minute.
    static constexpr int kResetIntervalMs = 50000;

    // Named after the mouse nudge that kept screen savers away on older desktops.
    void tmrMoveMouseToPreventScreenSaver_Timer();
    void resetScreenSaver();

    QTimer m_timer;
    ToolRunner* m_runner = nullptr;
};

} // namespace cq
