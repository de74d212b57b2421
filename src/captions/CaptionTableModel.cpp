#include "captions/CaptionTableModel.h"

#include "captions/CueTimeText.h"

#include <algorithm>

namespace cq {

namespace {

// A new cue never ends sooner than this after its start, even with the next cue close behind.
constexpr qint64 kShortestNewCueMs = 500;

// The text on one line, as a cell shows it and its editor starts from: a cell edits one line.
QString oneLine(const QString& text) {
    QString line = text;
    return line.replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\n', u' ');
}

} // namespace

CaptionTableModel::CaptionTableModel(QObject* parent) : QAbstractTableModel(parent) {}

int CaptionTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_cues.size());
}

int CaptionTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CaptionTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_cues.size())
        return {};
    const CaptionCue& cue = m_cues.at(index.row());
    if (role == Qt::ToolTipRole && index.column() == Text)
        return cue.text;
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (index.column()) {
    case Start:
        return CueTimeText(cue.startMs);
    case End:
        return CueTimeText(cue.endMs);
    case Text:
        return oneLine(cue.text);
    default:
        return {};
    }
}

QVariant CaptionTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Start:
        return QStringLiteral("Start");
    case End:
        return QStringLiteral("End");
    case Text:
        return QStringLiteral("Text");
    default:
        return {};
    }
}

Qt::ItemFlags CaptionTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
}

bool CaptionTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !index.isValid() || index.row() >= m_cues.size())
        return false;
    // An editor closed without a change changes nothing, not even a line break it cannot show.
    if (value.toString() == data(index, Qt::EditRole).toString())
        return true;
    if (index.column() == Text)
        return setText(index.row(), value.toString());
    return setTime(index.row(), index.column(), value.toString());
}

bool CaptionTableModel::setTime(int row, int column, const QString& typed) {
    const qint64 ms = ParseCueTime(typed);
    if (ms < 0) {
        emit editRefused(QStringLiteral("\"%1\" is no time; type it as 0:01.500 or in seconds.")
                             .arg(typed.trimmed()));
        return false;
    }
    CaptionCue& cue = m_cues[row];
    const qint64 start = column == Start ? ms : cue.startMs;
    const qint64 end = column == End ? ms : cue.endMs;
    if (start == cue.startMs && end == cue.endMs)
        return true; // the same time typed another way
    if (end <= start) {
        emit editRefused(QStringLiteral("A caption must end after it starts: %1 is not after %2.")
                             .arg(CueTimeText(end), CueTimeText(start)));
        return false;
    }
    cue.startMs = start;
    cue.endMs = end;
    emit dataChanged(index(row, column), index(row, column));
    if (column == Start)
        moveIntoOrder(row);
    userChanged();
    return true;
}

bool CaptionTableModel::setText(int row, const QString& typed) {
    m_cues[row].text = typed.trimmed();
    emit dataChanged(index(row, Text), index(row, Text));
    userChanged();
    return true;
}

void CaptionTableModel::moveIntoOrder(int row) {
    CaptionCues others = m_cues;
    const CaptionCue cue = others.takeAt(row);
    const auto place = std::upper_bound(
        others.cbegin(), others.cend(), cue.startMs,
        [](qint64 start, const CaptionCue& other) { return start < other.startMs; });
    const int target = int(place - others.cbegin());
    if (target == row)
        return;
    beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
    m_cues.move(row, target);
    endMoveRows();
}

void CaptionTableModel::loadCues(const CaptionCues& cues) {
    reset(cues, !cues.isEmpty());
}

void CaptionTableModel::replaceCues(const CaptionCues& cues) {
    reset(cues, false);
    emit cuesChanged();
}

void CaptionTableModel::clear() {
    reset({}, false);
}

void CaptionTableModel::reset(const CaptionCues& cues, bool editedByUser) {
    beginResetModel();
    m_cues = cues;
    SortCuesByStart(m_cues);
    endResetModel();
    m_editedByUser = editedByUser;
}

int CaptionTableModel::addCue(qint64 atMs) {
    qint64 start = qMax<qint64>(atMs, 0);
    if (atMs < 0)
        for (const CaptionCue& cue : m_cues)
            start = qMax(start, cue.endMs);
    const auto next = std::find_if(m_cues.cbegin(), m_cues.cend(),
                                   [start](const CaptionCue& cue) { return cue.startMs > start; });
    qint64 end = start + kNewCueMs;
    if (next != m_cues.cend())
        end = qMax(start + kShortestNewCueMs, qMin(end, next->startMs));
    const int row = int(next - m_cues.cbegin());
    beginInsertRows({}, row, row);
    m_cues.insert(row, {start, end, QString()});
    endInsertRows();
    userChanged();
    return row;
}

bool CaptionTableModel::removeCue(int row) {
    if (row < 0 || row >= m_cues.size())
        return false;
    beginRemoveRows({}, row, row);
    m_cues.removeAt(row);
    endRemoveRows();
    userChanged();
    return true;
}

void CaptionTableModel::userChanged() {
    m_editedByUser = true;
    emit cuesChanged();
}

} // namespace cq
