#pragma once

#include "render/RenderPlan.h"

#include <QString>
#include <QStringList>

namespace cq {

class RenderContainer;

// The pieces a render keeps in its work space for the next render. A piece counts only when it
// is complete: ffmpeg writes it under a temporary name, it is checked (every planned frame,
// whole), renamed into place, and its key written last. The key holds the piece's recipe and
// what the piece was (size and frames), so a piece damaged later is made again.
class PieceCache {
public:
    PieceCache(QString folder, const RenderContainer& container);

    // True when the piece is there, whole, and was made from the same recipe.
    bool isReusable(const RenderSegment& segment) const;
    // Removes the piece, its key and any partial file: it is about to be made again.
    void forget(const RenderSegment& segment) const;
    // Checks the partial file ffmpeg wrote and moves it into place. withKey is false for a
    // stand-in (black for an unreadable item), which must not pass for the item next time.
    // Returns why the piece cannot be used; empty when it was accepted.
    QString accept(const RenderSegment& segment, bool withKey) const;
    // Removes every piece, key, partial file and captions script that the given pieces do not
    // name: the pieces of older timelines. Returns how many files went.
    int removeAllBut(const QStringList& keptPieces) const;

    static QString keyFileOf(const RenderSegment& segment);

private:
    static QString keyText(const RenderSegment& segment, qint64 pieceBytes);

    QString m_folder;
    const RenderContainer& m_container;
};

} // namespace cq
