#include "render/AviContents.h"

#include "platform/RiffChunk.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>

namespace cq {

namespace {

bool isVideoChunk(const QByteArray& id) {
    // "00dc" compressed, "00db" uncompressed video.
    return id.size() == 4 && (id.endsWith("dc") || id.endsWith("db"));
}

// The stream a movi chunk belongs to: "01wb" is stream 1; -1 for index and padding chunks.
int streamOf(const QByteArray& id) {
    if (id.size() != 4 || id[0] < '0' || id[0] > '9' || id[1] < '0' || id[1] > '9')
        return -1;
    return (id[0] - '0') * 10 + (id[1] - '0');
}

// The hdrl list, read whole (it is a few kilobytes): one strl list per stream, each starting
// with its strh header.
void readStreamHeaders(QByteArray hdrl, QList<AviStream>& streams) {
    QBuffer buffer(&hdrl);
    buffer.open(QIODevice::ReadOnly);
    RiffChunkHeader h;
    while (ReadRiffChunkHeader(buffer, h)) {
        // A size beyond the list is the file's word, not memory to set aside for it.
        const QByteArray body = buffer.read(qMin(h.paddedSize(), buffer.bytesAvailable()));
        if (h.id != "LIST" || !body.startsWith("strlstrh"))
            continue;
        // The strh fields start after "strl", "strh" and the strh chunk's size.
        const QByteArray strh = body.mid(12);
        AviStream s;
        s.type = strh.left(4);
        s.scale = RiffGet32(strh, 20);
        s.rate = RiffGet32(strh, 24);
        s.sampleSize = RiffGet32(strh, 44);
        streams << s;
    }
}

// Lists within the movi list: ffmpeg writes "rec " lists one deep.
constexpr int kMaxMoviDepth = 4;

// Counts the chunks between the movi list's start and its end, and nested "rec " lists; false
// when one of them runs past the end or the lists nest deeper than any writer nests them.
bool countMovi(QFile& f, qint64 end, AviContents& c, int depth = 0) {
    if (depth > kMaxMoviDepth)
        return false;
    while (f.pos() + 8 <= end) {
        RiffChunkHeader h;
        if (!ReadRiffChunkHeader(f, h))
            return false;
        const qint64 next = f.pos() + h.paddedSize();
        if (f.pos() + h.size > end)
            return false;
        if (h.id == "LIST") {
            f.read(4);
            if (!countMovi(f, f.pos() + h.size - 4, c, depth + 1))
                return false;
        } else {
            if (isVideoChunk(h.id))
                ++c.videoFrames;
            const int stream = streamOf(h.id);
            if (stream >= 0 && stream < c.streams.size()) {
                ++c.streams[stream].chunks;
                c.streams[stream].bytes += h.size;
            }
        }
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

qint64 AviStream::durationMs() const {
    if (scale == 0 || rate == 0)
        return -1;
    const qint64 units = sampleSize > 0 ? bytes / sampleSize : chunks;
    const long double ms = (long double)units * scale * 1000 / rate + 0.5L;
    return ms < 9.0e18L ? qint64(ms) : -1;
}

qint64 AviContents::durationMs(const char* type) const {
    qint64 longest = -1;
    for (const AviStream& s : streams)
        if (s.type == type)
            longest = std::max(longest, s.durationMs());
    return longest;
}

AviContents ReadAviContents(const QString& fileSpec) {
    AviContents c;
    QFile f(fileSpec);
    if (!f.open(QIODevice::ReadOnly))
        return problem(c, f.errorString());
    const qint64 fileSize = f.size();
    bool sawMovi = false;
    // One RIFF "AVI " and, past 1 GB, further RIFF "AVIX" extensions, back to back.
    while (f.pos() < fileSize) {
        RiffChunkHeader riff;
        if (!ReadRiffChunkHeader(f, riff) || riff.id != "RIFF")
            return problem(c, QStringLiteral("no RIFF chunk at byte %1").arg(f.pos()));
        const qint64 riffEnd = f.pos() + riff.size;
        if (riffEnd > fileSize)
            return problem(c, QStringLiteral("the file ends %1 bytes short of its RIFF size")
                                  .arg(riffEnd - fileSize));
        const QByteArray form = f.read(4);
        if (form != "AVI " && form != "AVIX")
            return problem(c, QStringLiteral("it is no AVI file"));
        while (f.pos() + 8 <= riffEnd) {
            RiffChunkHeader h;
            ReadRiffChunkHeader(f, h);
            const qint64 end = f.pos() + h.size;
            if (end > riffEnd)
                return problem(c, QStringLiteral("a chunk runs past its RIFF"));
            const QByteArray list = h.id == "LIST" ? f.peek(4) : QByteArray();
            if (list == "hdrl" && c.streams.isEmpty()) {
                readStreamHeaders(f.read(h.size).mid(4), c.streams);
            } else if (list == "movi") {
                f.read(4);
                sawMovi = true;
                if (!countMovi(f, end, c))
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
