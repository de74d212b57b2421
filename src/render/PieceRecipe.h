#pragma once

#include "render/FrameRate.h"
#include "studio/TimelineEvent.h"

#include <QSize>
#include <QString>

#include <optional>

namespace cq {

// What a piece of the result shows. Text slides and pictures are all stills; black is the
// lead-in and the stand-in for an item that cannot be rendered.
enum class SegmentKind { Black, Still, Video };

// The kind of segment an event's kind makes; nothing for events that show nothing (a sound, an
// untyped file).
std::optional<SegmentKind> SegmentKindOfMediaType(MediaKind mediaType);

// Everything a piece is made from. Two pieces with equal recipes are the same file, so the key
// of the recipe names the piece: the same item at the same length finds its piece again in a
// later render, even when items before it were added or removed.
struct PieceRecipe {
    SegmentKind kind = SegmentKind::Still;
    QString source;
    qint64 sourceBytes = -1; // the source's size and time tell a file changed under one name
    qint64 sourceModifiedMs = -1;
    qint64 sourceStartMs = 0; // where a video's piece starts in the video
    qint64 frames = 0;
    QSize frameSize;
    FrameRate rate;
    QString encoderOptions; // the container's settings for pieces
    QString captions;       // the cues drawn into the piece and their look; empty for none

    // Reads the source's size and time now.
    static PieceRecipe of(SegmentKind kind, const QString& source, qint64 sourceStartMs,
                          qint64 frames, const QSize& frameSize, const FrameRate& rate,
                          const QString& encoderOptions);

    // One field a line, stored beside the piece.
    QString text() const;
    // 20 hexadecimal digits of the text's hash.
    QString key() const;
};

} // namespace cq
