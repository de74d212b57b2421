#include "captions/CueTimeText.h"

#include "platform/TimeText.h"

namespace cq {

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
    return ReadTimeText(text, TimeTextForm::Clock).ms;
}

} // namespace cq
