#include "platform/TimeCode.h"

#include "platform/TextHelpers.h"
#include "platform/TimeText.h"

#include <limits>

namespace cq {

namespace {

QString twoDigits(qint64 v) {
    return v < 10 ? QStringLiteral("0") + QString::number(v) : QString::number(v);
}

// The time code from the whole seconds and the fraction digits as they are written.
QString timeCode(qint64 whole, const QString& fraction) {
    const qint64 totalMinutes = whole / 60;
    const qint64 hours = totalMinutes > 59 ? totalMinutes / 60 : 0;
    const qint64 minutes = hours > 0 ? totalMinutes - 60 * hours : totalMinutes;
    const qint64 secs = minutes > 0 ? whole - (3600 * hours + 60 * minutes) : whole % 60;
    return twoDigits(hours) + u':' + twoDigits(minutes) + u':' + twoDigits(secs) + u'.' + fraction;
}

// The digits at the start of the text; -1 when they make a number beyond a qint64.
qint64 leadingNumber(QStringView text) {
    qint64 value = 0;
    for (QChar c : text) {
        if (c < u'0' || c > u'9')
            break;
        const int digit = c.unicode() - u'0';
        if (value > (std::numeric_limits<qint64>::max() - digit) / 10)
            return -1;
        value = value * 10 + digit;
    }
    return value;
}

} // namespace

QString TimeCodeFromMs(qint64 milliseconds) {
    if (milliseconds < 0)
        milliseconds = 0;
    QString fraction = QStringLiteral("%1").arg(milliseconds % 1000, 3, 10, QChar(u'0'));
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    return timeCode(milliseconds / 1000, fraction);
}

QString HHMMSSMSToSecondsInSSMSFormat(const QString& code) {
    const QStringView view(code);
    auto field = [&](qsizetype pos, qsizetype len) {
        return view.mid(pos, len);
    };
    auto counted = [&](QStringView f) {
        return f == u"00" ? 0 : leadingNumber(f);
    };
    const qint64 total =
        counted(field(0, 2)) * 3600 + counted(field(3, 2)) * 60 + counted(field(6, 2));
    const QStringView ms = code.size() > 9 ? field(9, 3) : QStringView();
    return QString::number(total) + u'.' + ms.toString();
}

QString SecondsTextFromMs(qint64 milliseconds) {
    if (milliseconds < 0)
        milliseconds = 0;
    const qint64 secs = milliseconds / 1000;
    const QString code = twoDigits(secs / 3600) + u'.' + twoDigits(secs / 60 % 60) + u'.' +
                         twoDigits(secs % 60) + u'.' +
                         QStringLiteral("%1").arg(milliseconds % 1000, 3, 10, QChar(u'0'));
    if (secs >= 100 * 3600) // beyond the two-digit hour field of the code
        return QString::number(secs) + u'.' + code.right(3);
    return HHMMSSMSToSecondsInSSMSFormat(code);
}

qint64 SecondsTextToMs(QStringView text) {
    return ReadTimeText(text, TimeTextForm::Seconds).ms;
}

} // namespace cq
