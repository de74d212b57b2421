#include "studio/EventRow.h"

#include "platform/TextHelpers.h"
#include "platform/TimeText.h"

#include <QStringList>

#include <algorithm>

namespace cq {

namespace {

QString withoutControls(QString field) {
    std::replace_if(field.begin(), field.end(), IsControlCharacter,
                    QChar(QChar::ReplacementCharacter));
    return field;
}

} // namespace

QString EventRow::rowText() const {
    QStringList fields{QString::number(mediaCount), mediaType, timeLine, begVideoAt, fileSpec};
    if (text)
        fields << *text;
    for (QString& field : fields)
        field = withoutControls(field);
    return fields.join(u'\t');
}

bool EventRow::controlCharacterIn(const QString& field) {
    return std::any_of(field.begin(), field.end(), IsControlCharacter);
}

qint64 EventRow::timeMs() const {
    return ReadTimeText(timeLine, TimeTextForm::Seconds).ms;
}

qint64 EventRow::begVideoAtMs() const {
    if (begVideoAt.trimmed().isEmpty())
        return -1;
    return ReadTimeText(begVideoAt, TimeTextForm::Seconds).ms;
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
    // The times are kept as the reader reads them, without the blanks around them, so that a
    // hand-edited file with a form feed beside a time still writes back a row that reads.
    row.timeLine = fields[2].trimmed();
    const TimeTextRead time = ReadTimeText(row.timeLine, TimeTextForm::Seconds);
    if (!time.ok())
        return fail(QStringLiteral("the time %1").arg(time.problem));
    row.begVideoAt = fields[3].trimmed();
    const TimeTextRead begin = ReadTimeText(row.begVideoAt, TimeTextForm::Seconds);
    if (!row.begVideoAt.isEmpty() && !begin.ok())
        return fail(QStringLiteral("the begin position %1").arg(begin.problem));
    row.fileSpec = fields[4];
    if (fields.size() == 6)
        row.text = fields[5];
    return row;
}

} // namespace cq
