#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

#include <algorithm>

namespace cq {

// One caption: what is shown from start to end. The text may hold one line break, no blank line.
struct CaptionCue {
    qint64 startMs = 0;
    qint64 endMs = 0;
    QString text;

    bool operator==(const CaptionCue&) const = default;
};

using CaptionCues = QList<CaptionCue>;

// In the order they appear; cues that start together keep their order.
inline void SortCuesByStart(CaptionCues& cues) {
    std::stable_sort(cues.begin(), cues.end(), [](const CaptionCue& a, const CaptionCue& b) {
        return a.startMs < b.startMs;
    });
}

} // namespace cq
