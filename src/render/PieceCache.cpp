#include "render/PieceCache.h"

#include "platform/TextFiles.h"
#include "render/RenderContainer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cstdio>

namespace cq {

PieceCache::PieceCache(QString folder, const RenderContainer& container)
    : m_folder(std::move(folder)), m_container(container) {}

QString PieceCache::keyFileOf(const RenderSegment& s) {
    const QFileInfo piece(s.piece);
    return piece.path() + u'/' + piece.completeBaseName() + QStringLiteral(".key");
}

QString PieceCache::keyText(const RenderSegment& s, qint64 pieceBytes) {
    return s.recipe.text() + QStringLiteral("bytes=%1 frames=%2\n").arg(pieceBytes).arg(s.frames);
}

bool PieceCache::isReusable(const RenderSegment& s) const {
    const QFileInfo piece(s.piece);
    if (!piece.isFile())
        return false;
    if (ReadFileToBytes(keyFileOf(s)) != keyText(s, piece.size()).toUtf8())
        return false;
    return m_container.pieceProblem(s.piece, s.frames, s.recipe.rate).isEmpty();
}

void PieceCache::forget(const RenderSegment& s) const {
    QFile::remove(keyFileOf(s));
    QFile::remove(s.piece);
    QFile::remove(s.partial);
}

QString PieceCache::accept(const RenderSegment& s, bool withKey) const {
    const QString problem = m_container.pieceProblem(s.partial, s.frames, s.recipe.rate);
    if (!problem.isEmpty())
        return problem;
    QFile::remove(keyFileOf(s));
    // rename(2) replaces an older piece in one step; QFile::rename would refuse to.
    if (std::rename(QFile::encodeName(s.partial).constData(),
                    QFile::encodeName(s.piece).constData()) != 0)
        return QStringLiteral("the piece \"%1\" could not be moved into place").arg(s.partial);
    if (withKey && !WriteWholeFile(keyText(s, QFileInfo(s.piece).size()).toUtf8(), keyFileOf(s)))
        QFile::remove(keyFileOf(s)); // without its key the piece is simply made again next time
    return {};
}

int PieceCache::removeAllBut(const QStringList& keptPieces) const {
    QSet<QString> kept;
    for (const QString& piece : keptPieces) {
        const QFileInfo fi(piece);
        kept << fi.fileName();
        kept << fi.completeBaseName() + QStringLiteral(".key");
        kept << fi.completeBaseName() + QStringLiteral(".ass");
    }
    int removed = 0;
    const QStringList patterns{QStringLiteral("*.") + m_container.suffix(), QStringLiteral("*.key"),
                               QStringLiteral("*.part"), QStringLiteral("*.ass")};
    const QDir dir(m_folder);
    for (const QString& name : dir.entryList(patterns, QDir::Files | QDir::Hidden)) {
        if (!kept.contains(name) && QFile::remove(dir.filePath(name)))
            ++removed;
    }
    return removed;
}

} // namespace cq
