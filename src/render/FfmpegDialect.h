#pragma once

#include <QSize>
#include <QString>

namespace cq {

// Every place where the command lines of the studio meet the options of the installed ffmpeg
// (5.1). The lines keep the studio's historic option words; this is where they are translated.
namespace FfmpegDialect {

// Still-image looping is an input option: "-loop 1" before "-i" (old builds: "-loop_input").
QString LoopStillInput();

// ffmpeg takes "29.97" literally (2997/100); the MPEG pieces run at NTSC's 30000/1001, and
// converting between the two would drop or duplicate frames. Other rates pass unchanged.
QString FrameRate(const QString& gstrFrameRate);
// Frames per second as a number for frame arithmetic (30000/1001 for "29.97").
double FramesPerSecond(const QString& gstrFrameRate);

// "320X240" or "320x240" to a size; an invalid size when the text is not WIDTHxHEIGHT. ffmpeg
// accepts the upper-case X as it is, so the text itself goes into "-s".
QSize ParseFrameSize(const QString& gstrVideoRes);

// The encoder settings of the joinable pieces: raw MPEG-1 video, which joins byte by byte
// without any timestamps to repair, at a quality that survives the final conversion; long
// groups of pictures, because most pieces are one still picture.
QString PieceEncoderOptions();
// The demuxer that reads the byte-joined pieces back.
QString JoinedInputFormat();
// The result's streams: MPEG-4 video and MPEG audio in AVI, which the studio's player plays.
QString FinalEncoderOptions();

} // namespace FfmpegDialect

} // namespace cq
