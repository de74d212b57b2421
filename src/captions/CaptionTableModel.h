#pragma once

#include "captions/CaptionCue.h"

#include <QAbstractTableModel>

namespace cq {

// The cues of the message as the caption editor lists them: start, end and text, in the order
// of their starts. Times are kept in milliseconds and shown and typed as "0:01.500". The model
// remembers whether the user changed the cues, so that making them anew can ask first.
class CaptionTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Start, End, Text, ColumnCount };
    // A new cue's length when nothing follows it closely.
    static constexpr qint64 kNewCueMs = 2000;

    explicit CaptionTableModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // A typed time that is no time, or that would end a cue before it starts, is refused and
    // editRefused says why.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    const CaptionCues& cues() const { return m_cues; }
    bool isEditedByUser() const { return m_editedByUser; }

    // Cues kept earlier (a project, a restored take): not a change to keep again. Cues that were
    // kept may hold the user's corrections, so they count as edited.
    void loadCues(const CaptionCues& cues);
    // Cues made anew for the message: a change to keep, but none of the user's.
    void replaceCues(const CaptionCues& cues);
    // No cues, as for a new recording; not a change to keep.
    void clear();

    // Adds an empty cue at atMs (after the last cue when atMs is negative) and returns its row.
    int addCue(qint64 atMs);
    bool removeCue(int row);

signals:
    // The user or a new making changed the cues: whoever keeps them writes them again.
    void cuesChanged();
    void editRefused(const QString& why);

private:
    bool setTime(int row, int column, const QString& typed);
    bool setText(int row, const QString& typed);
    // Moves the row whose start changed to its place among the starts.
    void moveIntoOrder(int row);
    void reset(const CaptionCues& cues, bool editedByUser);
    void userChanged();

    CaptionCues m_cues;
    bool m_editedByUser = false;
};

} // namespace cq
