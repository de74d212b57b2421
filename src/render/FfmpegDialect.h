#pragma once

#include <QSize>
#include <QString>

namespace cq {

// Every place where the command lines of the studio meet the options of the installed ffmpeg
// (5.1). The lines keep the studio's historic option words; this is where they are translated.
namespace FfmpegDialect {

// ffmpeg takes "29.97" literally (2997/100); the pieces run at NTSC's 30000/1001, and
// converting between the two would drop or duplicate frames. Another rate passes when it is a
// plain number or fraction; anything else falls back to NTSC, so no text reaches a script.
QString FrameRate(const QString& gstrFrameRate);
// Frames per second as a number for frame arithmetic (30000/1001 for "29.97").
double FramesPerSecond(const QString& gstrFrameRate);

// Strict: digits, "X" or "x", digits, nothing else (no blanks, no line ends), both even and
// from 16 to 4096. An invalid size for anything else.
QSize ParseFrameSize(const QString& gstrVideoRes);
// What is wrong with a size that ParseFrameSize refuses, for the user.
QString FrameSizeProblem(const QString& gstrVideoRes);

// The encoder settings of the pieces: already the result's MPEG-4 video in AVI, so that the
// join copies them; long groups of pictures, because most pieces are one still picture, and
// every piece starts on a key frame. One thread each: the pieces run on every core at once.
QString PieceEncoderOptions();
// The demuxer that reads the pieces back, in order, from a list file.
QString JoinedInputFormat();
// The result's streams: the pieces' video copied, MPEG audio layer 2 encoded. MP3 in AVI would
// make the muxer shift every video frame after the first (the encoder's priming).
QString FinalEncoderOptions();

} // namespace FfmpegDialect

} // namespace cq
