#pragma once

#include "render/RenderContainer.h"

#include <memory>

namespace cq {

// Pieces and results in AVI: MPEG-4 video, MPEG audio layer 2. A still is held by empty chunks,
// which players and ffmpeg read as the previous frame; pieces and results are checked and
// measured by walking their chunks, because the header's counts are written before the frames
// and stay when a file is cut short.
class AviContainer : public RenderContainer {
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
};

std::shared_ptr<const RenderContainer> MakeAviContainer();

} // namespace cq
