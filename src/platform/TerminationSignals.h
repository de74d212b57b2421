#pragma once

#include <QObject>

#include <csignal>

class QSocketNotifier;

namespace cq {

// Turns SIGTERM, SIGINT and SIGHUP into an orderly end of the program: every event loop of the
// main thread is left, so the objects that own tool runners are destroyed and each runner kills
// its tools' process group. A second signal of the same kind ends the program at once.
//
// Create one while the application object exists, before its event loop runs. The signal
// handler itself only writes the signal's number into a pipe; the rest happens on the event
// loop.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    // The signal that ended the event loops, 0 while none came.
    int received() const { return m_received; }
    // The exit code a shell expects of a program ended by the signal: 128 + its number.
    int exitCode() const { return m_received ? 128 + m_received : 0; }

private:
    void onReadable();

    int m_pipe[2] = {-1, -1};
    QSocketNotifier* m_notifier = nullptr;
    struct sigaction m_previous[3] = {};
    int m_received = 0;
};

} // namespace cq
