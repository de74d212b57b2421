#pragma once

#include <QString>
#include <QtGlobal>

namespace cq {

// A frame rate as the exact fraction ffmpeg works with: NTSC's "29.97" is 30000/1001, and
// frame arithmetic on the fraction never drifts the way a rounded decimal would.
struct FrameRate {
    qint64 num = 30000;
    qint64 den = 1001;

    static FrameRate ntsc() { return {30000, 1001}; }
    bool isValid() const { return num > 0 && den > 0; }
    // "30000/1001", or "25" for a whole rate: what ffmpeg's -r and fps= take.
    QString ffmpegText() const;
    // The frame of a stream at this rate that is shown at a time, rounded to the nearest.
    qint64 frameAt(qint64 ms) const;

    friend bool operator==(const FrameRate&, const FrameRate&) = default;
};

} // namespace cq
