#include "render/PieceRecipe.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QStringList>

namespace cq {

namespace {

// Raised whenever the way a piece is made from its recipe changes (its filters, the way a still
// is held), so that pieces of an older build are made again.
constexpr int kPieceMaking = 2;

QString kindName(SegmentKind kind) {
    switch (kind) {
    case SegmentKind::Black:
        return QStringLiteral("black");
    case SegmentKind::Still:
        return QStringLiteral("still");
    case SegmentKind::Video:
        return QStringLiteral("video");
    }
    return {};
}

} // namespace

std::optional<SegmentKind> SegmentKindOfMediaType(MediaKind mediaType) {
    switch (mediaType) {
    case MediaKind::Video:
        return SegmentKind::Video;
    case MediaKind::Pictures:
    case MediaKind::Text:
    case MediaKind::Both:
        return SegmentKind::Still;
    case MediaKind::Audio:
    case MediaKind::Untyped:
        break;
    }
    return std::nullopt;
}

PieceRecipe PieceRecipe::of(SegmentKind kind, const QString& source, qint64 sourceStartMs,
                            qint64 frames, const QSize& frameSize, const FrameRate& rate,
                            const QString& encoderOptions) {
    const QFileInfo fi(source);
    PieceRecipe r;
    r.kind = kind;
    r.source = source;
    r.sourceBytes = fi.exists() ? fi.size() : -1;
    r.sourceModifiedMs = fi.exists() ? fi.lastModified().toMSecsSinceEpoch() : -1;
    r.sourceStartMs = kind == SegmentKind::Video ? sourceStartMs : 0;
    r.frames = frames;
    r.frameSize = frameSize;
    r.rate = rate;
    r.encoderOptions = encoderOptions;
    return r;
}

QString PieceRecipe::text() const {
    // Only a piece that shows captions names them: the others keep the key they have without.
    const QString shown =
        captions.isEmpty() ? QString() : QStringLiteral("captions ") + captions + u'\n';
    // Built by joining, not by arg(): a file name may hold "%1".
    return QStringList{
               QStringLiteral("making %1").arg(kPieceMaking),
               QStringLiteral("kind ") + kindName(kind),
               QStringLiteral("source ") + source,
               QStringLiteral("source bytes %1 modified %2").arg(sourceBytes).arg(sourceModifiedMs),
               QStringLiteral("start %1 ms").arg(sourceStartMs),
               QStringLiteral("frames %1").arg(frames),
               QStringLiteral("size %1x%2").arg(frameSize.width()).arg(frameSize.height()),
               QStringLiteral("rate ") + rate.ffmpegText(),
               QStringLiteral("encoder ") + encoderOptions}
               .join(u'\n') +
           u'\n' + shown;
}

QString PieceRecipe::key() const {
    return QString::fromLatin1(
        QCryptographicHash::hash(text().toUtf8(), QCryptographicHash::Sha1).toHex().left(20));
}

} // namespace cq
