#include "captions/TextRowCues.h"

namespace cq {

CaptionCues CuesFromTextRows(const QList<EventRow>& rows, qint64 endMs) {
    CaptionCues cues;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const EventRow& row = rows.at(i);
        const qint64 start = row.timeMs();
        if (!row.isTextEvent() || !row.text || row.text->trimmed().isEmpty() || start < 0)
            continue;
        const qint64 end = i + 1 < rows.size() ? rows.at(i + 1).timeMs() : endMs;
        if (end > start)
            cues.append({start, end, row.text->trimmed()});
    }
    return cues;
}

} // namespace cq
