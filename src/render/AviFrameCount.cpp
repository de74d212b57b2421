#include "render/AviFrameCount.h"

#include <QFile>
#include <QtEndian>

namespace cq {

namespace {

struct ChunkHeader {
    QByteArray id;
    qint64 size = 0;
};

bool readHeader(QFile& f, ChunkHeader& h) {
    const QByteArray b = f.read(8);
    if (b.size() < 8)
        return false;
    h.id = b.left(4);
    h.size = qFromLittleEndian<quint32>(b.constData() + 4);
    return true;
}

bool isVideoChunk(const QByteArray& id) {
    // "00dc" compressed, "00db" uncompressed video of stream 00.
    return id.size() == 4 && (id.endsWith("dc") || id.endsWith("db"));
}

// Counts the video chunks between the movi list's start and its end; false when one of them
// runs past the end.
bool countMovi(QFile& f, qint64 end, qint64& frames) {
    while (f.pos() + 8 <= end) {
        ChunkHeader h;
        if (!readHeader(f, h))
            return false;
        const qint64 next = f.pos() + h.size + (h.size & 1);
        if (f.pos() + h.size > end)
            return false;
        if (isVideoChunk(h.id))
            ++frames;
        if (!f.seek(next))
            return false;
    }
    return f.pos() == end || f.pos() == end + 1;
}

AviContents problem(AviContents c, const QString& why) {
    c.complete = false;
    c.problem = why;
    return c;
}

} // namespace

AviContents ReadAviContents(const QString& fileSpec) {
    AviContents c;
    QFile f(fileSpec);
    if (!f.open(QIODevice::ReadOnly))
        return problem(c, f.errorString());
    const qint64 fileSize = f.size();
    bool sawMovi = false;
    // One RIFF "AVI " and, past 1 GB, further RIFF "AVIX" extensions, back to back.
    while (f.pos() < fileSize) {
        ChunkHeader riff;
        if (!readHeader(f, riff) || riff.id != "RIFF")
            return problem(c, QStringLiteral("no RIFF chunk at byte %1").arg(f.pos()));
        const qint64 riffEnd = f.pos() + riff.size;
        if (riffEnd > fileSize)
            return problem(c, QStringLiteral("the file ends %1 bytes short of its RIFF size")
                                  .arg(riffEnd - fileSize));
        const QByteArray form = f.read(4);
        if (form != "AVI " && form != "AVIX")
            return problem(c, QStringLiteral("it is no AVI file"));
        while (f.pos() + 8 <= riffEnd) {
            ChunkHeader h;
            readHeader(f, h);
            const qint64 end = f.pos() + h.size;
            if (end > riffEnd)
                return problem(c, QStringLiteral("a chunk runs past its RIFF"));
            if (h.id == "LIST" && f.peek(4) == "movi") {
                f.read(4);
                sawMovi = true;
                if (!countMovi(f, end, c.videoFrames))
                    return problem(c, QStringLiteral("a frame runs past its list"));
            }
            if (!f.seek(end + (h.size & 1)))
                return problem(c, QStringLiteral("the file is cut short"));
        }
        f.seek(std::min(riffEnd + (riff.size & 1), fileSize));
    }
    if (!sawMovi)
        return problem(c, QStringLiteral("it holds no frames"));
    c.complete = true;
    return c;
}

} // namespace cq
