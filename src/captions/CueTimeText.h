#pragma once

#include <QString>
#include <QStringView>

namespace cq {

// A cue's time as the caption editor shows it: "0:01.500" (minutes, seconds, milliseconds), with
// hours in front from the first hour on, "1:02:03.040".
QString CueTimeText(qint64 ms);

// What the user may type for a cue's time: "0:01.500", "1:02:03.04", "1:30" or plain seconds
// such as "90" or "1.5"; a comma may stand for the point. Fraction digits beyond milliseconds
// are cut. Returns -1 for a text that is no time or more than a day.
qint64 ParseCueTime(QStringView text);

} // namespace cq
