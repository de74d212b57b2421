#include "timeline/SlideShowPicker.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace cq {

const QStringList& SlideShowWaits() {
    static const QStringList waits{".6", ".8", "1",  "1.5", "2",  "3",   "4",
                                   "5",  "6",  "7",  "8",   "9",  "10",  "12",
                                   "15", "30", "40", "50",  "60", "100", "200"};
    return waits;
}

QString DefaultSlideShowWait() {
    return QStringLiteral("2");
}

std::optional<int> SlideShowWaitMs(const QString& text) {
    bool ok = false;
    const double seconds = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok || !std::isfinite(seconds) || seconds <= 0 || seconds > 24 * 3600)
        return std::nullopt;
    // Below a tenth of a second the show would do nothing but redraw.
    return std::max(100, static_cast<int>(std::llround(seconds * 1000.0)));
}

void SlideShowPicker::start(QList<int> selectedRows) {
    std::sort(selectedRows.begin(), selectedRows.end());
    selectedRows.erase(std::unique(selectedRows.begin(), selectedRows.end()), selectedRows.end());
    m_selection = std::move(selectedRows);
    m_selectionMode = m_selection.size() > 3;
    m_position = 0;
    m_index = 0;
}

std::optional<int> SlideShowPicker::next(int listCount, bool random,
                                         const RandomBetween& randomBetween) {
    if (listCount <= 0)
        return std::nullopt;
    if (m_selectionMode) {
        const int count = static_cast<int>(m_selection.size());
        int pick = 0;
        if (random) {
            pick = std::clamp(randomBetween(1, count), 1, count);
        } else {
            // After the last selected entry the show starts again with the first.
            m_position = m_position >= count ? 1 : m_position + 1;
            pick = m_position;
        }
        const int row = m_selection[pick - 1];
        return row < listCount ? std::optional<int>(row) : std::nullopt;
    }
    if (random)
        return std::clamp(randomBetween(0, listCount - 1), 0, listCount - 1);
    // The step comes before the show, so an ordered show begins with the second entry.
    ++m_index;
    if (m_index > listCount - 1)
        m_index = 0;
    return m_index;
}

} // namespace cq
