#pragma once

#include "captions/CaptionCue.h"
#include "render/FrameRate.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>

namespace cq {

// A cue as one piece shows it: on the piece's frames [firstFrame, endFrame), counted from the
// piece's own first frame. Whole frames, so that a cue starts and ends on the same frame whether
// the piece is made alone or beside others.
struct PieceCue {
    qint64 firstFrame = 0;
    qint64 endFrame = 0;
    QString text;

    bool operator==(const PieceCue&) const = default;
};

using PieceCues = QList<PieceCue>;

// The cues a piece covering the result's frames [firstFrame, firstFrame + frames) shows, cut to
// the piece. A cue shows from the frame shown at its start up to the one shown at its end.
PieceCues PieceCuesOf(const CaptionCues& cues, const FrameRate& rate, qint64 firstFrame,
                      qint64 frames);

// The result's frames strictly inside (from, to) where a cue appears or goes, in order: a still
// is cut there, so that only its stretches under a cue are made of real frames.
QList<qint64> CueEdgesWithin(const CaptionCues& cues, const FrameRate& rate, qint64 from,
                             qint64 to);

// The cues and the way they are drawn as one line of a piece's recipe; empty for no cues, so a
// piece without captions keeps the name it has in a render without them.
QString PieceCuesRecipe(const PieceCues& cues);

// The script libass draws for a piece: Liberation Sans, white with a dark outline, centred at
// the bottom, its size a fixed share of the frame's height.
QByteArray BurnedCaptionsScript(const PieceCues& cues, const FrameRate& rate,
                                const QSize& frameSize);

// The filter that draws the script file onto a piece's frames, escaped for a filter graph: any
// folder name may hold the script.
QString BurnedCaptionsFilter(const QString& scriptFile);

// A filter option's value escaped for both levels of ffmpeg's filter graph syntax: the option
// value (\ ' :) and the graph (\ ' [ ] , ;).
QString FilterGraphValue(const QString& value);

} // namespace cq
