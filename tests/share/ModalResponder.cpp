#include "ModalResponder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace cq::test {

ModalResponder::ModalResponder(QList<Step> steps) : m_steps(std::move(steps)) {
    connect(&m_timer, &QTimer::timeout, this, &ModalResponder::poll);
    m_timer.start(30);
}

ModalResponder::Step ModalResponder::typeText(const QString& text) {
    return [text](QWidget* w) {
        if (auto* input = qobject_cast<QInputDialog*>(w)) {
            input->setTextValue(text);
            input->accept();
        }
    };
}

ModalResponder::Step ModalResponder::press(const QString& buttonText) {
    return [buttonText](QWidget* w) {
        if (auto* box = qobject_cast<QMessageBox*>(w))
            for (QAbstractButton* b : box->buttons())
                if (b->text().remove(u'&') == buttonText)
                    b->click();
    };
}

void ModalResponder::poll() {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || modal == m_handled)
        return;
    m_handled = modal;
    if (auto* box = qobject_cast<QMessageBox*>(modal))
        texts << box->text();
    else if (auto* input = qobject_cast<QInputDialog*>(modal))
        texts << input->labelText();
    if (!m_steps.isEmpty()) {
        m_steps.takeFirst()(modal);
    } else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
        dialog->reject();
    }
}

} // namespace cq::test
