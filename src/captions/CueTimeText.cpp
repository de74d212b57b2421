#include "captions/CueTimeText.h"

#include "platform/TimeCode.h"

#include <QList>

namespace cq {

namespace {

// A whole number of minutes or hours; -1 when the part is not all digits.
qint64 wholeNumber(QStringView part) {
    if (part.isEmpty() || part.size() > 6)
        return -1;
    for (QChar c : part)
        if (c < u'0' || c > u'9')
            return -1;
    return part.toLongLong();
}

} // namespace

QString CueTimeText(qint64 ms) {
    ms = qMax<qint64>(0, ms);
    const qint64 hours = ms / 3600000;
    const QString minutesAndSeconds = QStringLiteral("%1:%2.%3")
                                          .arg(ms / 60000 % 60, hours ? 2 : 1, 10, QChar(u'0'))
                                          .arg(ms / 1000 % 60, 2, 10, QChar(u'0'))
                                          .arg(ms % 1000, 3, 10, QChar(u'0'));
    return hours ? QString::number(hours) + u':' + minutesAndSeconds : minutesAndSeconds;
}

qint64 ParseCueTime(QStringView text) {
    QString cleaned = text.trimmed().toString();
    cleaned.replace(u',', u'.');
    const QList<QStringView> parts = QStringView(cleaned).split(u':');
    // A dozen characters hold any time of a message; more could only overflow.
    if (parts.size() > 3 || parts.last().size() > 12)
        return -1;
    const qint64 secondsMs = SecondsTextToMs(parts.last());
    if (secondsMs < 0 || secondsMs > qint64(1000) * 360000)
        return -1;
    if (parts.size() == 1)
        return secondsMs;
    // After a colon the seconds and the minutes stay under sixty, as a clock shows them.
    if (secondsMs >= 60000)
        return -1;
    const qint64 minutes = wholeNumber(parts.at(parts.size() - 2));
    const qint64 hours = parts.size() == 3 ? wholeNumber(parts.first()) : 0;
    if (minutes < 0 || hours < 0 || (parts.size() == 3 && minutes >= 60))
        return -1;
    return (hours * 60 + minutes) * 60000 + secondsMs;
}

} // namespace cq
