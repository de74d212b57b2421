#pragma once

#include "captions/CaptionCue.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace cq {

// The two subtitle formats players and browsers read, both UTF-8. A cue's text is cleaned on the
// way out so that no text can end a cue early or be read as a timing line: blank lines are
// dropped and "-->" is written with a no-break space inside the arrow.
QByteArray WriteSrt(const CaptionCues& cues);
QByteArray WriteVtt(const CaptionCues& cues);

struct ReadCues {
    CaptionCues cues;
    QString problem; // empty when the whole file was read
};

// Reads SRT or WebVTT (LF or CR LF, in any encoding DecodeOutsideText reads). Cues whose timing
// line cannot be read are skipped, the first named by its line in `problem`; the rest are kept.
ReadCues ReadSubtitles(const QByteArray& bytes);

// The subtitle files a player loads with a video by itself, SRT first, then WebVTT: the video's
// name with their suffix in place of its own ("/a/b.mp4" gives "/a/b.srt" and "/a/b.vtt"); a name
// without a suffix gets one.
QStringList SubtitleFilesBeside(const QString& video);

// "00:01:02,345" (SRT) or "00:01:02.345" (WebVTT).
QString SubtitleTime(qint64 ms, QChar separator);

} // namespace cq
