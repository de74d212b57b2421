#pragma once

#include <QString>
#include <QStringView>

namespace cq {

// The one reader of times written as text, for every file and field the studio reads: the
// event rows, the subtitle files, the caption editor. It counts digits as it reads, so no text
// can wrap a number around, and it refuses any time past kLongestTimeMs.
//
// Why a day: the studio makes short narrated videos, and everything it reads a time for belongs
// to one recording of the voice. That voice is a WAV file, which holds at most 4 GiB: about
// 12 hours of the 48 kHz 16-bit mono the recorder writes, and less of any richer sound. No row,
// caption or video position of a real take can be later than that; a day leaves room for any
// hand-made file and keeps every sum of times far away from the limits of a 64-bit number.
inline constexpr qint64 kLongestTimeMs = qint64(24) * 3600 * 1000;

enum class TimeTextForm {
    // "65.125", "7.", ".5", "12.3456789": seconds with one optional point.
    Seconds,
    // "[[h:]m:]s[.f]" with a point or a comma before the fraction: "1:02:03,040", "2:03.5",
    // "90". After a colon the seconds stay under 60, and so do the minutes after an hour.
    Clock,
};

struct TimeTextRead {
    qint64 ms = -1;
    // Why the text is no time the studio can use, naming the text, to follow a noun such as
    // "the time": "\"abc\" is not a number of seconds" (or "is not a time" for a clock), or
    // "\"99999999\" is more than 24 hours". Empty when the time was read.
    QString problem;
    bool ok() const { return problem.isEmpty(); }
};

// Spaces around the time are ignored; fraction digits beyond milliseconds are cut.
TimeTextRead ReadTimeText(QStringView text, TimeTextForm form);

} // namespace cq
