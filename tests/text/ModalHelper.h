#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace cq::test {

// Runs the action on the first visible top-level window with this object name as soon as it
// shows (modal windows block the test's own code until they close).
inline void WhenShown(const QString& objectName, std::function<void(QWidget*)> action) {
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
}

} // namespace cq::test
