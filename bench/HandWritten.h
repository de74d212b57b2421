#pragma once

#include "studio/TimelineEvent.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

// The hand-written ffmpeg commands a render is measured against.
namespace cq::bench {

// What the result's codecs are asked to do, split by stream.
struct Encoders {
    QStringList video;
    QStringList sound;
};

// The same video as a render makes, from one ffmpeg run: every item decoded once, fitted, held
// for its frames, concatenated and mixed with the voice. `black` fills the time before the first
// item; `muxer` closes the output's options.
QStringList OnePassArguments(const QList<TimelineEvent>& rows, const QString& voice, qint64 voiceMs,
                             const QSize& size, const QString& black, const Encoders& encoders,
                             const QStringList& muxer, const QString& out);

// The least work any render of the message must do, timed: the video items' frames decoded once
// per file, fitted and encoded, beside the voice encoded, as two ffmpeg runs side by side writing
// to ffmpeg's null output. A render's time above this is what its stills, its joining and its
// checks cost. Negative when a run fails.
double LeastWorkSeconds(const QString& ffmpeg, const QList<TimelineEvent>& rows,
                        const QString& voice, qint64 voiceMs, const QSize& size,
                        const Encoders& encoders);

} // namespace cq::bench
