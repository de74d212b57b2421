#include "platform/TimeText.h"

#include <QList>

namespace cq {

namespace {

enum class Number { Read, NotDigits, TooLarge };

// Reads a run of decimal digits into *value, stopping as soon as it passes limit, so that the
// count of digits cannot make it overflow. An empty run reads as 0.
Number readDigits(QStringView digits, qint64 limit, qint64* value) {
    *value = 0;
    for (QChar c : digits) {
        if (c < u'0' || c > u'9')
            return Number::NotDigits;
    }
    for (QChar c : digits) {
        *value = *value * 10 + (c.unicode() - u'0');
        if (*value > limit)
            return Number::TooLarge;
    }
    return Number::Read;
}

// The first three fraction digits as milliseconds: ".5" is 500, ".05" is 50; the rest are cut.
Number readFraction(QStringView digits, qint64* ms) {
    qint64 value = 0;
    if (readDigits(digits, kLongestTimeMs, &value) == Number::NotDigits)
        return Number::NotDigits;
    const QString three = (digits.left(3).toString() + QStringLiteral("000")).left(3);
    *ms = three.toLongLong();
    return Number::Read;
}

QString quoted(QStringView text) {
    // A line of a hostile file may be long: the message shows its start.
    const QString shown =
        text.size() > 40 ? text.left(40).toString() + QStringLiteral("...") : text.toString();
    return u'"' + shown + u'"';
}

TimeTextRead notATime(QStringView text, TimeTextForm form) {
    return {-1, QStringLiteral("%1 is not %2")
                    .arg(quoted(text), form == TimeTextForm::Seconds
                                           ? QStringLiteral("a number of seconds")
                                           : QStringLiteral("a time"))};
}

TimeTextRead tooLarge(QStringView text) {
    return {
        -1,
        QStringLiteral("%1 is more than %2 hours").arg(quoted(text)).arg(kLongestTimeMs / 3600000)};
}

// The milliseconds of "[[h:]m:]s" given as its fields. Each field is read against the longest time
// in its own unit, so each stops in time. A clock's seconds and, below an hour field, its minutes
// stay under sixty: more is no clock time (NotDigits) rather than a large one.
Number sumOfFields(const QList<QStringView>& fields, qint64* total) {
    const qint64 limits[] = {kLongestTimeMs / 3600000, kLongestTimeMs / 60000,
                             kLongestTimeMs / 1000};
    const qint64 units[] = {3600000, 60000, 1000};
    const qsizetype first = 3 - fields.size();
    *total = 0;
    bool over = false;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        qint64 value = 0;
        const Number n = readDigits(fields[i], limits[first + i], &value);
        if (n == Number::NotDigits || (i > 0 && (n == Number::TooLarge || value >= 60)))
            return Number::NotDigits;
        over = over || n == Number::TooLarge;
        *total += value * units[first + i];
    }
    return over ? Number::TooLarge : Number::Read;
}

} // namespace

TimeTextRead ReadTimeText(QStringView text, TimeTextForm form) {
    const QStringView trimmed = text.trimmed();
    QString seconds = trimmed.toString();
    if (form == TimeTextForm::Clock)
        seconds.replace(u',', u'.');
    QList<QStringView> parts = QStringView(seconds).split(u':');
    if (parts.size() > (form == TimeTextForm::Clock ? 3 : 1))
        return notATime(trimmed, form);
    const QStringView last = parts.takeLast();
    const qsizetype point = last.indexOf(u'.');
    const QStringView whole = point < 0 ? last : last.left(point);
    const QStringView fraction = point < 0 ? QStringView() : last.mid(point + 1);
    if (whole.isEmpty() && fraction.isEmpty())
        return notATime(trimmed, form);
    for (QStringView part : parts)
        if (part.isEmpty())
            return notATime(trimmed, form);
    if (!parts.isEmpty() && whole.isEmpty())
        return notATime(trimmed, form);

    qint64 fractionMs = 0;
    if (readFraction(fraction, &fractionMs) != Number::Read)
        return notATime(trimmed, form);
    parts << whole;
    qint64 total = 0;
    const Number n = sumOfFields(parts, &total);
    if (n == Number::NotDigits)
        return notATime(trimmed, form);
    total += fractionMs;
    if (n == Number::TooLarge || total > kLongestTimeMs)
        return tooLarge(trimmed);
    return {total, QString()};
}

} // namespace cq
