#include "captions/TextRowCues.h"

#include "captions/CueSplitting.h"

namespace cq {

CaptionCues CuesFromTextRows(const QList<EventRow>& rows, qint64 endMs) {
    CaptionCues cues;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const EventRow& row = rows.at(i);
        const qint64 startMs = row.timeMs();
        if (!row.isTextEvent() || !row.text || startMs < 0)
            continue;
        const QString text = WrapCaptionLines(*row.text);
        if (text.isEmpty())
            continue;
        qint64 untilMs = endMs;
        for (qsizetype j = i + 1; j < rows.size(); ++j) {
            const qint64 nextMs = rows.at(j).timeMs();
            if (nextMs >= 0) {
                untilMs = qMin(untilMs, nextMs);
                break;
            }
        }
        if (untilMs > startMs)
            cues << CaptionCue{startMs, untilMs, text};
    }
    return cues;
}

} // namespace cq
