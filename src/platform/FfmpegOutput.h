#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QtNumeric>

namespace cq {

// The one reader of what ffmpeg and ffprobe print: the description of an input on ffmpeg's
// stderr ("Duration: ...", "Stream #0:0: Video: ..."), its progress ("time=" on stderr,
// "out_time_us=" with -progress), and ffprobe's key=value output.

// The text behind a label ("Video: ", "Bitrate: ") up to the end of its line, the label found
// without regard to case; a null string when the label is not there.
QString FfmpegLabelLine(const QString& text, QStringView label);

// The comma-separated fields of a stream line. ffmpeg writes commas inside parentheses
// ("yuvj420p(pc, bt470bg/unknown/unknown)"); those belong to their field.
QStringList FfmpegStreamFields(const QString& line);

// One stream of an input as ffmpeg describes it: "Stream #0:1[0x2](eng): Audio: aac (LC), ..."
// has the kind "Audio" and the description "aac (LC), ...".
struct FfmpegStream {
    QString kind; // "Video", "Audio", "Subtitle", "Data", "Attachment"
    QString description;
};

// The streams of the inputs, from the lines that begin with a stream's number only: a file name
// or a tag holding "Audio: " is no stream (ffmpeg indents a tag's further lines under its name).
QList<FfmpegStream> FfmpegInputStreams(const QString& text);

// The "hh:mm:ss.cc" behind the first "Duration: " that begins a line (after its indent), or an
// empty text when there is none or ffmpeg said "N/A".
QString FfmpegDurationCode(const QString& text);

// The same as milliseconds from one line of stderr; -1 when the line holds no known duration.
qint64 FfmpegDurationMs(const QString& line);

// How far an encode has come, from a stderr statistics line ("... time=00:01:02.50 ...") or a
// -progress line ("out_time_us=62500000"); -1 when the line does not say.
qint64 FfmpegProgressMs(const QString& line);

// How far an encode of an input totalMs long has come at reachedMs, as a percent from 0 to 99:
// 100 is kept for the end, when the output exists.
int FfmpegProgressPercent(qint64 reachedMs, qint64 totalMs);

// ffprobe's "-of default=nw=1" output as key and value pairs, in order.
QList<QPair<QString, QString>> FfprobeKeyValues(const QString& text);

// The lengths ffprobe reports with "-show_entries format=duration:stream=codec_type,duration":
// the first video and audio stream and the container; -1 where it gave none.
struct ProbedLengths {
    qint64 videoMs = -1;
    qint64 audioMs = -1;
    qint64 formatMs = -1;
};
ProbedLengths FfprobeLengths(const QString& text);

// The summary the ebur128 filter prints when its input ends (with peak=true): the integrated
// loudness in LUFS and the true peak in dBTP. NaN where the text holds no summary; a silent input
// reads as -70 LUFS and -inf dBTP.
struct LoudnessSummary {
    double integratedLufs = qQNaN();
    double truePeakDb = qQNaN();

    bool ok() const { return !qIsNaN(integratedLufs) && !qIsNaN(truePeakDb); }
};
LoudnessSummary FfmpegLoudnessSummary(const QString& text);

// The "Noise floor dB: " that the astats filter prints for the whole input, in dBFS; -inf for
// digital silence, NaN when the text holds none.
double FfmpegNoiseFloorDb(const QString& text);

} // namespace cq
