#pragma once

#include <QString>

namespace cq {

// The facts that ffmpeg prints about a file it is given as input. Every field is text; a fact
// that the description lacks stays empty.
struct MediaFileInfo {
    QString Duration; // seconds with the fraction ffmpeg printed: "5.00"
    QString Bitrate;  // digits: "1411"
    QString VideoCodec;
    QString VideoPixelFormat;
    QString FrameSize; // "640x480", with whatever ffmpeg printed behind it
    QString Width;
    QString Height;
    QString FrameRate; // digits, "29.97" for NTSC
    QString AudioCodec;
    QString AudioSampleRate;
    QString AudioChannels;
    QString AudioBits;

    // Duration in milliseconds; -1 when ffmpeg gave none ("N/A", unreadable file).
    qint64 durationMs() const;
    bool hasVideo() const { return !VideoCodec.isEmpty(); }
    bool hasAudio() const { return !AudioCodec.isEmpty(); }
};

// Picks the facts out of ffmpeg's description of its input (what it writes to stderr when it is
// given an input and no output). Never fails: text without the labels gives empty fields.
MediaFileInfo GetFileInfoVars(const QString& probeText);

} // namespace cq
