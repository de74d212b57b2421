#include "platform/widgets/CenterForm.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace cq {

void CenterForm(QWidget* window) {
    if (!window)
        return;
    QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame = window->frameGeometry();
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft());
}

} // namespace cq
