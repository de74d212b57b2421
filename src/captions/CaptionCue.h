#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

namespace cq {

// One caption: what is shown from start to end. The text may hold one line break, no blank line.
struct CaptionCue {
    qint64 startMs = 0;
    qint64 endMs = 0;
    QString text;

    bool operator==(const CaptionCue&) const = default;
};

using CaptionCues = QList<CaptionCue>;

} // namespace cq
