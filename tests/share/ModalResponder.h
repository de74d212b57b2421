#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <functional>

class QWidget;

namespace cq::test {

// Answers the modal windows a handler opens, one step per window, in order, and keeps the text
// each one showed. Without a step left, a window is closed as if by Escape.
class ModalResponder : public QObject {
public:
    using Step = std::function<void(QWidget*)>;
    explicit ModalResponder(QList<Step> steps = {});

    QStringList texts; // message box texts and input dialog labels, in order

    static Step typeText(const QString& text);    // an input dialog: type and press OK
    static Step press(const QString& buttonText); // a message box: press the button with this text

private:
    void poll();
    QList<Step> m_steps;
    QPointer<QWidget> m_handled;
    QTimer m_timer;
};

} // namespace cq::test
