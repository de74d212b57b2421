#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace cq {

// The 21 waits of cboSlideShowPictureWait, in seconds, and the one it starts with.
const QStringList& SlideShowWaits();
QString DefaultSlideShowWait();
// The wait of a wait text in milliseconds (".6" gives 600); nothing for a text that is not a
// positive number, which ends the show.
std::optional<int> SlideShowWaitMs(const QString& text);

// Which entry of the Pictures list a slide show shows next. More than three selected entries
// make a show of the selection only; otherwise the whole list is shown.
class SlideShowPicker {
public:
    using RandomBetween = std::function<int(int low, int high)>;

    // A new show over the selected list rows (any order; kept in list order).
    void start(QList<int> selectedRows);
    // The list index to show next, or nothing when the list is empty.
    std::optional<int> next(int listCount, bool random, const RandomBetween& randomBetween);

    bool selectionMode() const { return m_selectionMode; }
    const QList<int>& selection() const { return m_selection; }

private:
    QList<int> m_selection;
    bool m_selectionMode = false;
    int m_position = 0;
    int m_index = 0;
};

} // namespace cq
