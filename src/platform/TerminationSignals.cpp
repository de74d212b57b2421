#include "platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace cq {

namespace {

constexpr int kSignals[3] = {SIGTERM, SIGINT, SIGHUP};

// A signal handler reaches only process-wide state; this is the pipe of the one live
// TerminationSignals object, -1 while there is none.
std::atomic<int> g_writeEnd{-1};

extern "C" void onTerminationSignal(int signalNumber) {
    const int saved = errno;
    const int fd = g_writeEnd.load();
    if (fd >= 0) {
        const unsigned char byte = static_cast<unsigned char>(signalNumber);
        [[maybe_unused]] const ssize_t n = ::write(fd, &byte, 1);
    }
    errno = saved;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    int expected = -1;
    if (!g_writeEnd.compare_exchange_strong(expected, m_pipe[1])) {
        qWarning("Only one TerminationSignals object can watch the signals at a time.");
        return;
    }
    m_notifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::onReadable);
    struct sigaction action = {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    // The first signal asks for an orderly end; should that hang, the next one ends it.
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    for (int i = 0; i < 3; ++i)
        ::sigaction(kSignals[i], &action, &m_previous[i]);
}

TerminationSignals::~TerminationSignals() {
    if (m_notifier) {
        for (int i = 0; i < 3; ++i)
            ::sigaction(kSignals[i], &m_previous[i], nullptr);
        g_writeEnd.store(-1);
    }
    for (int fd : m_pipe)
        if (fd >= 0)
            ::close(fd);
}

void TerminationSignals::onReadable() {
    unsigned char byte = 0;
    if (::read(m_pipe[0], &byte, 1) != 1 || m_received != 0)
        return;
    m_received = byte;
    // Ends the main loop of the window and any local loop a headless command waits in; loops
    // started later return at once.
    QCoreApplication::exit(exitCode());
    QThread::currentThread()->exit(exitCode());
}

} // namespace cq
