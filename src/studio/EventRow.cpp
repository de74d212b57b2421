#include "studio/EventRow.h"

#include "platform/TimeCode.h"

#include <QStringList>

#include <cmath>

namespace cq {

QString EventRow::rowText() const {
    QStringList fields{QString::number(mediaCount), mediaType, timeLine, begVideoAt, fileSpec};
    if (text)
        fields << *text;
    return fields.join(u'\t');
}

qint64 EventRow::timeMs() const {
    return SecondsTextToMs(timeLine);
}

qint64 EventRow::begVideoAtMs() const {
    if (begVideoAt.trimmed().isEmpty())
        return -1;
    bool ok = false;
    const double seconds = begVideoAt.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(seconds) || seconds < 0)
        return -1;
    return static_cast<qint64>(std::llround(seconds * 1000.0));
}

std::optional<EventRow> EventRow::fromRowText(const QString& rowText, QString* error) {
    auto fail = [error](const QString& why) -> std::optional<EventRow> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    const QStringList fields = rowText.split(u'\t');
    if (fields.size() < 5 || fields.size() > 6)
        return fail(
            QStringLiteral("expected 5 or 6 tab-separated fields, found %1").arg(fields.size()));
    EventRow row;
    bool ok = false;
    row.mediaCount = fields[0].toInt(&ok);
    if (!ok || row.mediaCount < 1)
        return fail(QStringLiteral("the count \"%1\" is not a positive number").arg(fields[0]));
    row.mediaType = fields[1];
    static const QStringList known{QStringLiteral("Video"), QStringLiteral("Pictures"),
                                   QStringLiteral("Text"),  QStringLiteral("Both"),
                                   QStringLiteral("Audio"), QString()};
    if (!known.contains(row.mediaType))
        return fail(QStringLiteral("unknown media type \"%1\"").arg(row.mediaType));
    row.timeLine = fields[2];
    if (row.timeMs() < 0)
        return fail(QStringLiteral("the time \"%1\" is not a number of seconds").arg(fields[2]));
    row.begVideoAt = fields[3];
    if (!row.begVideoAt.trimmed().isEmpty() && row.begVideoAtMs() < 0)
        return fail(QStringLiteral("the begin position \"%1\" is not a number").arg(fields[3]));
    row.fileSpec = fields[4];
    if (fields.size() == 6)
        row.text = fields[5];
    return row;
}

} // namespace cq
