#include "timeline/widgets/EventGridView.h"

#include "timeline/EventGridModel.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

namespace cq {

EventGridView::EventGridView(EventGridModel& model, QWidget* parent)
    : QTableView(parent), m_model(model) {
    setObjectName(QStringLiteral("MSFlexGrid1"));
    setModel(&model);
    setAccessibleName(QStringLiteral("Events"));
    setAccessibleDescription(QStringLiteral("Video Events"));
    setMouseTracking(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    verticalHeader()->hide();
    // One line a row; a long path keeps its file name in view.
    setWordWrap(false);
    setTextElideMode(Qt::ElideLeft);
    for (int c = 0; c < EventGridModel::FileSpec; ++c)
        setColumnWidth(c, 80);
    horizontalHeader()->setSectionResizeMode(EventGridModel::FileSpec, QHeaderView::Stretch);
    setColumnWidth(EventGridModel::TextColumn, 1);
    // Shown, the grid takes the room it needs from the media area beside the display.
    setMinimumWidth(480);
    hide();
}

void EventGridView::cmdEvents_Click() {
    if (isHidden()) {
        show();
        raise();
    } else {
        hide();
    }
}

void EventGridView::mouseMoveEvent(QMouseEvent* event) {
    const QModelIndex cell = indexAt(event->pos());
    setToolTip(cell.isValid() ? m_model.text(cell.row(), cell.column()) : QString());
    QTableView::mouseMoveEvent(event);
}

void EventGridView::deleteCurrentRow() {
    if (currentIndex().isValid())
        m_model.removeEventRow(currentIndex().row());
}

void EventGridView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && state() != QAbstractItemView::EditingState &&
        m_model.isEditable()) {
        deleteCurrentRow();
        return;
    }
    QTableView::keyPressEvent(event);
}

void EventGridView::contextMenuEvent(QContextMenuEvent* event) {
    const QModelIndex cell = indexAt(event->pos());
    if (!cell.isValid() || !m_model.isEditable())
        return;
    setCurrentIndex(cell);
    QMenu menu(this);
    menu.addAction(QStringLiteral("Change Time"), this,
                   [this, cell] { edit(m_model.index(cell.row(), EventGridModel::TimeLine)); });
    menu.addAction(QStringLiteral("Delete Row"), this, &EventGridView::deleteCurrentRow);
    menu.exec(event->globalPos());
}

} // namespace cq
