#include "take/widgets/TakeQuestions.h"

#include "take/TakeKeeper.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

namespace cq {

namespace {
const QString kTitle = QStringLiteral("Recording not saved");

void nameButton(QAbstractButton* button, const QString& name, const QString& tip) {
    button->setObjectName(name);
    button->setAccessibleName(button->text().remove(u'&'));
    button->setToolTip(tip);
    button->setAccessibleDescription(tip);
}
} // namespace

TakeQuestions::TakeQuestions(TakeKeeper& keeper, std::function<void()> saveTake, QWidget* window)
    : QObject(window), m_keeper(keeper), m_saveTake(std::move(saveTake)), m_window(window) {}

QMessageBox* TakeQuestions::openBox(const QString& objectName, const QString& text) {
    auto* box =
        new QMessageBox(QMessageBox::Question, kTitle, text, QMessageBox::NoButton, m_window);
    box->setObjectName(objectName);
    box->setAttribute(Qt::WA_DeleteOnClose);
    m_open = box;
    return box;
}

void TakeQuestions::offerLeftTake() {
    if (!m_keeper.isUnsaved() || (m_open && m_open->isVisible()))
        return;
    QMessageBox* box = openBox(QStringLiteral("restoreTakeQuestion"),
                               QStringLiteral("A recording that was never saved was found: the "
                                              "studio ended before it was saved or discarded. "
                                              "Restore it to replay, render or save it?"));
    QPushButton* restore = box->addButton(QStringLiteral("Restore"), QMessageBox::AcceptRole);
    nameButton(restore, QStringLiteral("Restore"),
               QStringLiteral("Bring back the voice and the events of that recording"));
    QPushButton* discard = box->addButton(QStringLiteral("Discard"), QMessageBox::DestructiveRole);
    nameButton(discard, QStringLiteral("Discard"),
               QStringLiteral("Delete that recording for good"));
    box->setDefaultButton(restore);
    // Closing the box otherwise answers nothing: the take stays for the next start.
    connect(box, &QMessageBox::finished, this, [this, box, restore, discard] {
        if (box->clickedButton() == discard)
            m_keeper.discard();
        else if (box->clickedButton() == restore)
            emit takeRestored(m_keeper.restore());
    });
    box->open();
}

bool TakeQuestions::takeMayGo(const QString& action, std::function<void()> then) {
    if (!m_keeper.isUnsaved())
        return true;
    if (m_open && m_open->isVisible()) {
        m_open->raise();
        return false;
    }
    QMessageBox* box =
        openBox(QStringLiteral("unsavedTakeQuestion"),
                QStringLiteral("The recording has not been saved. Save it as a project before "
                               "%1, or discard it?")
                    .arg(action));
    nameButton(box->addButton(QMessageBox::Save), QStringLiteral("Save"),
               QStringLiteral("Keep the recording in a project folder"));
    nameButton(box->addButton(QMessageBox::Discard), QStringLiteral("Discard"),
               QStringLiteral("Delete the recording for good"));
    nameButton(box->addButton(QMessageBox::Cancel), QStringLiteral("Cancel"),
               QStringLiteral("Go back to the recording"));
    box->setDefaultButton(QMessageBox::Save);
    connect(box, &QMessageBox::finished, this, [this, box, then] {
        onUnsavedAnswer(box->standardButton(box->clickedButton()), then);
    });
    box->open();
    return false;
}

void TakeQuestions::onUnsavedAnswer(int button, const std::function<void()>& then) {
    if (button == QMessageBox::Save) {
        // The folder dialog may be cancelled: the take then stays, and so does the studio.
        m_saveTake();
        if (m_keeper.isUnsaved())
            return;
    } else if (button == QMessageBox::Discard) {
        m_keeper.discard();
    } else {
        return;
    }
    if (then)
        then();
}

} // namespace cq
