#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QMessageBox;
class QWidget;

namespace cq {

class TakeKeeper;

// The questions about a take that was never saved. None waits in a loop of its own: each box
// is opened and its answer carries on from the event loop.
class TakeQuestions : public QObject {
    Q_OBJECT
public:
    // saveTake saves the take as a project (asking where); it may be cancelled.
    TakeQuestions(TakeKeeper& keeper, std::function<void()> saveTake, QWidget* window);

    // At start-up: a take left in the work folder is offered back ("Restore" / "Discard").
    void offerLeftTake();
    // Before something replaces the take or ends the studio: true when there is no unsaved
    // take. Otherwise asks "Save" / "Discard" / "Cancel", returns false, and calls then() once
    // the take was saved or discarded.
    bool takeMayGo(const QString& action, std::function<void()> then);

signals:
    // The left take is back in the grid and the voice file (problem: what could not be had).
    void takeRestored(const QString& problem);

private:
    QMessageBox* openBox(const QString& objectName, const QString& text);
    void onUnsavedAnswer(int button, const std::function<void()>& then);

    TakeKeeper& m_keeper;
    std::function<void()> m_saveTake;
    QWidget* m_window;
    QPointer<QMessageBox> m_open;
};

} // namespace cq
