#pragma once

#include "studio/TimelineEvent.h"

#include <QAbstractTableModel>
#include <QList>

namespace cq {

// The event grid MSFlexGrid1: one row per logged item under a header row of six columns.
// Rows are appended while recording. While no recording runs the user may correct a row's time
// or delete a row; the rows are then kept in time order. A row's count is its number.
class EventGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { MediaCount, MediaType, TimeLine, BegVideoAt, FileSpec, TextColumn, ColumnCount };

    explicit EventGridModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    void appendRow(const TimelineEvent& row);
    // Back to the header row only.
    void clear();
    void setRows(const QList<TimelineEvent>& rows);
    const QList<TimelineEvent>& rows() const { return m_rows; }
    const TimelineEvent& row(int r) const { return m_rows.at(r); }
    // The grid's cell text by event row (0 = first event) and column, as the grid shows it.
    QString text(int row, int column) const;
    // The media type column, first event first.
    QList<MediaKind> mediaTypes() const;

    // Corrections, refused while editing is locked (a recording runs).
    void setEditable(bool editable) { m_editable = editable; }
    bool isEditable() const { return m_editable; }
    bool setRowTime(int row, qint64 milliseconds);
    bool removeEventRow(int row);

private:
    void sortByTime();

    QList<TimelineEvent> m_rows;
    bool m_editable = true;
};

} // namespace cq
