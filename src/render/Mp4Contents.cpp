#include "render/Mp4Contents.h"

#include <QFile>
#include <QtEndian>

namespace cq {

namespace {

// A movie box holds the sample tables of every track: a few megabytes for hours of video.
constexpr qint64 kMaxMovieBox = 64 * 1024 * 1024;
// Boxes within boxes; real files nest six deep.
constexpr int kMaxDepth = 8;

struct BoxHeader {
    QByteArray type;
    qint64 start = 0; // of the header
    qint64 body = 0;  // where the contents start
    qint64 end = 0;   // one past the last byte
};

quint32 get32(const QByteArray& b, qint64 at) {
    if (at < 0 || at + 4 > b.size())
        return 0;
    return qFromBigEndian<quint32>(b.constData() + at);
}

quint64 get64(const QByteArray& b, qint64 at) {
    if (at < 0 || at + 8 > b.size())
        return 0;
    return qFromBigEndian<quint64>(b.constData() + at);
}

// The header of the box at `at` within [at, limit): its 32-bit size, or the 64-bit one after
// the type when the size is 1, or the rest of the limit when it is 0. An empty type when the
// header is cut short, smaller than itself, or reaches past the limit.
BoxHeader parseHeader(const QByteArray& head, qint64 at, qint64 limit) {
    BoxHeader h;
    if (head.size() < 8)
        return h;
    quint64 size = get32(head, 0);
    qint64 headerSize = 8;
    if (size == 1) {
        if (head.size() < 16)
            return h;
        size = get64(head, 8);
        headerSize = 16;
    } else if (size == 0) {
        size = quint64(limit - at);
    }
    if (size < quint64(headerSize) || size > quint64(limit - at))
        return h;
    h.type = head.mid(4, 4);
    h.start = at;
    h.body = at + headerSize;
    h.end = at + qint64(size);
    return h;
}

// The version byte of a full box decides whether its times are 32 or 64 bits.
void readTimes(const QByteArray& body, quint32& timescale, quint64& duration) {
    if (body.isEmpty())
        return;
    if (body[0] == 1) {
        timescale = get32(body, 20);
        duration = get64(body, 24);
    } else {
        timescale = get32(body, 12);
        duration = get32(body, 16);
    }
}

class MovieReader {
public:
    MovieReader(const QByteArray& moov, Mp4Contents& c) : m_moov(moov), m_c(c) {}

    // Reads the boxes in [from, to) of the movie box; false when one of them is broken.
    bool readBoxes(qint64 from, qint64 to, int depth) {
        if (depth > kMaxDepth)
            return false;
        qint64 at = from;
        while (at + 8 <= to) {
            const BoxHeader h = parseHeader(m_moov.mid(at, 16), at, to);
            if (h.type.isEmpty())
                return false;
            if (!readBox(h, depth))
                return false;
            at = h.end;
        }
        return at == to;
    }

private:
    bool readBox(const BoxHeader& h, int depth) {
        const QByteArray body = m_moov.mid(h.body, h.end - h.body);
        if (h.type == "trak") {
            m_c.tracks.append(Mp4Track());
            return readBoxes(h.body, h.end, depth + 1);
        }
        if (h.type == "mdia" || h.type == "minf" || h.type == "stbl")
            return readBoxes(h.body, h.end, depth + 1);
        if (h.type == "mvhd") {
            readTimes(body, m_c.movieTimescale, m_c.movieDuration);
            return true;
        }
        if (m_c.tracks.isEmpty())
            return true; // other boxes outside a track: user data, ...
        Mp4Track& t = m_c.tracks.last();
        if (h.type == "tkhd")
            t.trackDuration = body.isEmpty() ? 0 : body[0] == 1 ? get64(body, 28) : get32(body, 20);
        else if (h.type == "mdhd")
            readTimes(body, t.mediaTimescale, t.mediaDuration);
        else if (h.type == "hdlr")
            t.handler = body.mid(8, 4);
        else if (h.type == "stts")
            return readTimeToSample(body, t);
        return true;
    }

    static bool readTimeToSample(const QByteArray& body, Mp4Track& t) {
        const qint64 entries = get32(body, 4);
        if (8 + entries * 8 > body.size())
            return false;
        for (qint64 i = 0; i < entries; ++i) {
            const quint32 count = get32(body, 8 + i * 8);
            t.samples += count;
            t.sampleTime += quint64(count) * get32(body, 12 + i * 8);
        }
        return true;
    }

    const QByteArray& m_moov;
    Mp4Contents& m_c;
};

Mp4Contents problem(Mp4Contents c, const QString& why) {
    c.complete = false;
    c.problem = why;
    return c;
}

} // namespace

const Mp4Track* Mp4Contents::track(const char* handler) const {
    for (const Mp4Track& t : tracks)
        if (t.handler == handler)
            return &t;
    return nullptr;
}

qint64 Mp4Contents::durationMs(const char* handler) const {
    const Mp4Track* t = track(handler);
    if (!t || movieTimescale == 0)
        return -1;
    const long double ms = (long double)t->trackDuration * 1000 / movieTimescale + 0.5L;
    // A 64-bit duration in a clock of one tick a second is longer than a qint64 of milliseconds.
    return ms < 9.0e18L ? qint64(ms) : -1;
}

Mp4Contents ReadMp4Contents(const QString& fileSpec) {
    Mp4Contents c;
    QFile f(fileSpec);
    if (!f.open(QIODevice::ReadOnly))
        return problem(c, f.errorString());
    const qint64 fileSize = f.size();
    bool sawMdat = false;
    bool sawMoov = false;
    qint64 at = 0;
    while (at < fileSize) {
        if (!f.seek(at))
            return problem(c, QStringLiteral("the file is cut short"));
        const BoxHeader h = parseHeader(f.read(16), at, fileSize);
        if (h.type.isEmpty())
            return problem(
                c, QStringLiteral("the box at byte %1 is broken or runs past the end").arg(at));
        if (h.type == "mdat") {
            sawMdat = true;
        } else if (h.type == "moov" && !sawMoov) {
            if (h.end - h.body > kMaxMovieBox)
                return problem(c, QStringLiteral("its movie box is too large to be real"));
            sawMoov = true;
            c.moovBeforeMdat = !sawMdat;
            f.seek(h.body);
            const QByteArray moov = f.read(h.end - h.body);
            MovieReader reader(moov, c);
            if (moov.size() != h.end - h.body || !reader.readBoxes(0, moov.size(), 0))
                return problem(c, QStringLiteral("its movie box is broken"));
        }
        at = h.end;
    }
    if (!sawMoov || !sawMdat)
        return problem(c, sawMoov ? QStringLiteral("it holds no media data")
                                  : QStringLiteral("it has no movie box"));
    if (c.movieTimescale == 0 || c.tracks.isEmpty())
        return problem(c, QStringLiteral("its movie box describes no track"));
    for (const Mp4Track& t : c.tracks)
        if (t.mediaTimescale == 0)
            return problem(c, QStringLiteral("a track has no clock"));
    c.complete = true;
    return c;
}

} // namespace cq
