#pragma once

#include <QString>
#include <QStringView>

namespace cq {

// Time codes are the fixed-position "hh:mm:ss.ms" texts of the tools' command lines (the event
// log writes "hh.mm.ss.ms"); seconds texts are "65.125" (whole seconds, a point, the fraction
// digits as they stand). Inside the program, time is integer milliseconds.

// Milliseconds to "hh:mm:ss.f": the fraction drops its trailing zeros, so 65500 gives
// "00:01:05.5" and 7000 gives "00:00:07." with a lone point.
QString TimeCodeFromMs(qint64 milliseconds);

// "00:01:05.5" gives "65.5"; "00.01.05.000" gives "65.000". Fields at fixed positions.
QString HHMMSSMSToSecondsInSSMSFormat(const QString& code);

// Milliseconds as the event log's seconds text with three fraction digits: 65125 -> "65.125".
QString SecondsTextFromMs(qint64 milliseconds);
// A seconds text ("65.125", "7.", ".500", "12.3456789") to milliseconds, extra digits cut.
// Returns -1 for a text that is not a number of seconds or is more than a day (see TimeText.h,
// which also says why).
qint64 SecondsTextToMs(QStringView text);

} // namespace cq
