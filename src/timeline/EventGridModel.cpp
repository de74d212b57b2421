#include "timeline/EventGridModel.h"

#include "platform/TimeCode.h"
#include "studio/TimelineFile.h"

#include <algorithm>

namespace cq {

EventGridModel::EventGridModel(QObject* parent) : QAbstractTableModel(parent) {
    setObjectName(QStringLiteral("MSFlexGrid1"));
}

int EventGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int EventGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString EventGridModel::text(int row, int column) const {
    if (row < 0 || row >= m_rows.size())
        return {};
    const TimelineEvent& r = m_rows[row];
    switch (column) {
    case MediaCount:
        return QString::number(row + 1);
    case MediaType:
        return MediaKindWord(r.kind);
    case TimeLine:
        return EventSecondsText(r.atMs);
    case BegVideoAt:
        return r.startMs ? EventSecondsText(*r.startMs) : QString();
    case FileSpec:
        return r.file;
    case TextColumn:
        return r.text;
    default:
        return {};
    }
}

QList<MediaKind> EventGridModel::mediaTypes() const {
    QList<MediaKind> kinds;
    kinds.reserve(m_rows.size());
    for (const TimelineEvent& r : m_rows)
        kinds << r.kind;
    return kinds;
}

QVariant EventGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return text(index.row(), index.column());
    case Qt::TextAlignmentRole:
        if (index.column() == FileSpec)
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default:
        return {};
    }
}

QVariant EventGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char* const headers[ColumnCount] = {"Media Count", "Media Type", "Time Line",
                                                     "BegVideoAt",  "FileSpec",   ""};
    if (section < 0 || section >= ColumnCount)
        return {};
    return QString::fromLatin1(headers[section]);
}

Qt::ItemFlags EventGridModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    if (m_editable && index.column() == TimeLine)
        f |= Qt::ItemIsEditable;
    return f;
}

bool EventGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !index.isValid() || index.column() != TimeLine)
        return false;
    const qint64 ms = SecondsTextToMs(value.toString().trimmed());
    if (ms < 0)
        return false;
    return setRowTime(index.row(), ms);
}

void EventGridModel::appendRow(const TimelineEvent& row) {
    const int at = static_cast<int>(m_rows.size());
    beginInsertRows({}, at, at);
    m_rows << row;
    endInsertRows();
}

void EventGridModel::clear() {
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

void EventGridModel::setRows(const QList<TimelineEvent>& rows) {
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

bool EventGridModel::setRowTime(int row, qint64 milliseconds) {
    if (!m_editable || row < 0 || row >= m_rows.size() || milliseconds < 0)
        return false;
    m_rows[row].atMs = milliseconds;
    sortByTime();
    return true;
}

bool EventGridModel::removeEventRow(int row) {
    if (!m_editable || row < 0 || row >= m_rows.size())
        return false;
    beginRemoveRows({}, row, row);
    m_rows.removeAt(row);
    endRemoveRows();
    sortByTime();
    return true;
}

void EventGridModel::sortByTime() {
    beginResetModel();
    // Stable: rows logged at the same moment keep the order they were clicked in.
    std::stable_sort(
        m_rows.begin(), m_rows.end(),
        [](const TimelineEvent& a, const TimelineEvent& b) { return a.atMs < b.atMs; });
    endResetModel();
}

} // namespace cq
