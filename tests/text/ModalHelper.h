#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace cq::test {

// Watches for a window while it lives; the watch ends with it, so a window that never came
// cannot set off an action meant for a later test.
class ShownWatch {
public:
    explicit ShownWatch(QTimer* timer) : m_timer(timer) {}
    ShownWatch(ShownWatch&& other) noexcept : m_timer(other.m_timer) { other.m_timer = nullptr; }
    ShownWatch(const ShownWatch&) = delete;
    ShownWatch& operator=(const ShownWatch&) = delete;
    ~ShownWatch() { delete m_timer.data(); }

private:
    QPointer<QTimer> m_timer;
};

// Runs the action on the first visible top-level window with this object name as soon as it
// shows (modal windows block the test's own code until they close).
[[nodiscard]] inline ShownWatch WhenShown(const QString& objectName,
                                          std::function<void(QWidget*)> action) {
    auto* timer = new QTimer(qApp);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, objectName, action] {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (w->objectName() == objectName && w->isVisible()) {
                timer->stop();
                timer->deleteLater();
                action(w);
                return;
            }
        }
    });
    timer->start();
    return ShownWatch(timer);
}

} // namespace cq::test
