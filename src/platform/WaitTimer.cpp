#include "platform/WaitTimer.h"

#include <QEventLoop>

namespace cq {

WaitTimer::WaitTimer(QObject* parent) : QObject(parent) {
    m_tmrWait.setObjectName(QStringLiteral("tmrWait"));
    m_tmrWait.setSingleShot(true);
    connect(&m_tmrWait, &QTimer::timeout, this, [this] {
        m_fired = true;
        emit fired();
    });
}

void WaitTimer::WaitMilliseconds(int milliseconds) {
    if (milliseconds <= 0)
        return;
    m_fired = false;
    m_tmrWait.stop();
    m_tmrWait.start(milliseconds);
    QEventLoop loop;
    connect(this, &WaitTimer::fired, &loop, &QEventLoop::quit);
    ++m_depth;
    if (!m_fired)
        loop.exec();
    --m_depth;
    m_tmrWait.stop();
}

void WaitTimer::release() {
    m_tmrWait.stop();
    m_fired = true;
    emit fired();
}

void WaitMilliseconds(int milliseconds) {
    if (milliseconds <= 0)
        return;
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace cq
