#include "captions/TextRowCues.h"

#include "captions/CueSplitting.h"

namespace cq {

CaptionCues CuesFromTextRows(const QList<TimelineEvent>& rows, qint64 endMs) {
    CaptionCues cues;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const TimelineEvent& row = rows.at(i);
        const qint64 startMs = row.atMs;
        if (!row.isText())
            continue;
        const QString text = WrapCaptionLines(row.text);
        if (text.isEmpty())
            continue;
        qint64 untilMs = endMs;
        if (i + 1 < rows.size())
            untilMs = qMin(untilMs, rows.at(i + 1).atMs);
        if (untilMs > startMs)
            cues << CaptionCue{startMs, untilMs, text};
    }
    return cues;
}

} // namespace cq
