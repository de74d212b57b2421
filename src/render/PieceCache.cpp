#include "render/PieceCache.h"

#include "platform/TextFiles.h"
#include "render/AviContents.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

#include <cstdio>

namespace cq {

namespace {

// The source's size and time tell a file that was changed under the same name.
QString sourceFingerprint(const QString& source) {
    const QFileInfo fi(source);
    return QString::number(fi.size()) + u' ' +
           QString::number(fi.lastModified().toMSecsSinceEpoch());
}

bool writeAtomically(const QString& fileSpec, const QByteArray& bytes) {
    QSaveFile f(fileSpec);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() && f.commit();
}

} // namespace

PieceCache::PieceCache(QString folder) : m_folder(std::move(folder)) {}

QString PieceCache::keyFileOf(const RenderSegment& s) {
    QString key = s.piece;
    key.chop(4); // ".avi"
    return key + QStringLiteral(".key");
}

QString PieceCache::keyText(const RenderSegment& s, qint64 pieceBytes) {
    return s.recipe + u'\n' + sourceFingerprint(s.source) + u'\n' +
           QStringLiteral("bytes=%1 frames=%2\n").arg(pieceBytes).arg(s.frames);
}

bool PieceCache::isReusable(const RenderSegment& s) const {
    const QFileInfo piece(s.piece);
    if (!piece.isFile())
        return false;
    if (ReadFileToBytes(keyFileOf(s)) != keyText(s, piece.size()).toUtf8())
        return false;
    return ReadAviContents(s.piece).holds(s.frames);
}

void PieceCache::forget(const RenderSegment& s) const {
    QFile::remove(keyFileOf(s));
    QFile::remove(s.piece);
    QFile::remove(s.partial);
}

QString PieceCache::accept(const RenderSegment& s, bool withKey) const {
    const AviContents made = ReadAviContents(s.partial);
    if (!made.complete)
        return QStringLiteral("the piece \"%1\" is damaged: %2").arg(s.partial, made.problem);
    if (made.videoFrames != s.frames)
        return QStringLiteral("the piece \"%1\" has %2 of its %3 frames")
            .arg(s.partial)
            .arg(made.videoFrames)
            .arg(s.frames);
    QFile::remove(keyFileOf(s));
    // rename(2) replaces an older piece in one step; QFile::rename would refuse to.
    if (std::rename(QFile::encodeName(s.partial).constData(),
                    QFile::encodeName(s.piece).constData()) != 0)
        return QStringLiteral("the piece \"%1\" could not be moved into place").arg(s.partial);
    if (withKey && !writeAtomically(keyFileOf(s), keyText(s, QFileInfo(s.piece).size()).toUtf8()))
        QFile::remove(keyFileOf(s)); // without its key the piece is simply made again next time
    return {};
}

int PieceCache::removeAllBut(const QStringList& keptPieces) const {
    QSet<QString> kept;
    for (const QString& piece : keptPieces) {
        const QString name = QFileInfo(piece).fileName();
        kept << name;
        kept << name.left(name.size() - 4) + QStringLiteral(".key");
    }
    int removed = 0;
    const QStringList patterns{QStringLiteral("*.avi"), QStringLiteral("*.key"),
                               QStringLiteral("*.part")};
    const QDir dir(m_folder);
    for (const QString& name : dir.entryList(patterns, QDir::Files | QDir::Hidden)) {
        if (!kept.contains(name) && QFile::remove(dir.filePath(name)))
            ++removed;
    }
    return removed;
}

} // namespace cq
