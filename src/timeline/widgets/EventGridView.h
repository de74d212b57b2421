#pragma once

#include <QTableView>

namespace cq {

class EventGridModel;

// The view of the event grid MSFlexGrid1. Hidden until "Events" shows it. While no recording
// runs a row's time can be typed over and the Delete key (or the menu) removes a row.
class EventGridView : public QTableView {
    Q_OBJECT
public:
    explicit EventGridView(EventGridModel& model, QWidget* parent = nullptr);

    // cmdEvents: shows the grid in front, or hides it.
    void cmdEvents_Click();
    void deleteCurrentRow();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    EventGridModel& m_model;
};

} // namespace cq
