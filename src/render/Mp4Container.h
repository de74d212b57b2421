#pragma once

#include "render/RenderContainer.h"

#include <memory>

namespace cq {

// Pieces and results in MP4: H.264 video (libx264, preset veryfast, CRF 23, yuv420p), AAC
// sound, the movie box before the media data so that a browser can start before it has the
// whole file. A still is four encoded frames however long it lasts: MP4 keeps each frame's own
// duration. Pieces and results are checked and measured by reading their boxes.
class Mp4Container : public RenderContainer {
public:
    QString suffix() const override;
    QStringList pieceEncoderOptions(const FrameRate& rate) const override;
    StillHold stillHold(qint64 frames, const FrameRate& rate) const override;
    QString pieceProblem(const QString& file, qint64 frames, const FrameRate& rate) const override;
    QStringList resultEncoderOptions() const override;
    QString soundSuffix() const override;
    QStringList soundEncoderOptions() const override;
    ResultLengths measureSound(const QString& file) const override;
    QStringList copyResultOptions() const override;
    ResultLengths measure(const QString& file) const override;
    QStringList captionTrackOptions() const override;
};

std::shared_ptr<const RenderContainer> MakeMp4Container();

// The clock of a piece's video track: a whole number of ticks for every frame at the rate, and
// at least 10000 ticks a second, as ffmpeg would choose it.
qint64 Mp4TrackTimescale(const FrameRate& rate);

} // namespace cq
