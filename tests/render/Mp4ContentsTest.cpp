#include "render/Mp4Contents.h"
#include "render/FrameRate.h"
#include "render/Mp4Container.h"
#include "support/TestAppFolder.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace cq;

namespace {

QByteArray be32(quint32 v) {
    QByteArray b(4, '\0');
    qToBigEndian(v, b.data());
    return b;
}

QByteArray box(const char* type, const QByteArray& body) {
    return be32(quint32(8 + body.size())) + QByteArray(type, 4) + body;
}

// A full box of version 0: version and flags, then the fields.
QByteArray fullBox(const char* type, const QByteArray& fields) {
    return box(type, be32(0) + fields);
}

QByteArray times(quint32 timescale, quint32 duration) {
    return be32(0) + be32(0) + be32(timescale) + be32(duration);
}

// A track of `samples` samples of `delta` ticks each in a clock of `timescale`.
QByteArray track(const char* handler, quint32 timescale, quint32 samples, quint32 delta,
                 quint32 movieDuration) {
    const QByteArray tkhd = fullBox("tkhd", be32(0) + be32(0) + be32(1) + be32(0) +
                                                be32(movieDuration) + QByteArray(60, '\0'));
    const QByteArray stts = fullBox("stts", be32(1) + be32(samples) + be32(delta));
    const QByteArray mdia =
        box("mdia", fullBox("mdhd", times(timescale, samples * delta) + be32(0)) +
                        fullBox("hdlr", be32(0) + QByteArray(handler, 4) + QByteArray(12, '\0')) +
                        box("minf", box("stbl", stts)));
    return box("trak", tkhd + mdia);
}

QByteArray movie(const QByteArray& tracks, quint32 durationMs) {
    return box("moov", fullBox("mvhd", times(1000, durationMs) + QByteArray(80, '\0')) + tracks);
}

// ftyp, the movie box, the media data: as a render's result or piece is laid out.
QByteArray file(const QByteArray& tracks, quint32 durationMs = 3337, bool indexFirst = true) {
    const QByteArray ftyp = box("ftyp", "isom" + be32(512));
    const QByteArray mdat = box("mdat", QByteArray(64, 'x'));
    const QByteArray moov = movie(tracks, durationMs);
    return ftyp + (indexFirst ? moov + mdat : mdat + moov);
}

class Mp4Files : public ::testing::Test {
protected:
    QString write(const QByteArray& bytes) {
        const QString name = dir.filePath(QStringLiteral("f%1.mp4").arg(++count));
        test::WriteFile(name, bytes);
        return name;
    }

    QTemporaryDir dir;
    int count = 0;
};

const QByteArray kVideo = track("vide", 30000, 100, 1001, 3337);

} // namespace

TEST_F(Mp4Files, ReadsTheTracksLengthsAndTheOrderOfTheBoxes) {
    const QByteArray bytes =
        file(kVideo + track("soun", 44100, 3, 44100, 3000), 3337, /*indexFirst=*/true);
    const Mp4Contents c = ReadMp4Contents(write(bytes));
    ASSERT_TRUE(c.complete) << c.problem.toStdString();
    EXPECT_TRUE(c.moovBeforeMdat);
    ASSERT_EQ(c.tracks.size(), 2);
    EXPECT_EQ(c.tracks[0].samples, 100);
    EXPECT_EQ(c.tracks[0].sampleTime, 100100u);
    EXPECT_EQ(c.tracks[0].mediaTimescale, 30000u);
    EXPECT_EQ(c.durationMs("vide"), 3337);
    EXPECT_EQ(c.durationMs("soun"), 3000);
    EXPECT_EQ(c.durationMs("text"), -1);

    EXPECT_FALSE(ReadMp4Contents(write(file(kVideo, 3337, false))).moovBeforeMdat);
    // A last box of size 0 reaches to the end of the file.
    QByteArray open = file(kVideo);
    open.replace(open.size() - 72, 4, be32(0));
    EXPECT_TRUE(ReadMp4Contents(write(open)).complete);
}

TEST_F(Mp4Files, ACutShortFileIsNeverWhole) {
    const QByteArray bytes = file(kVideo);
    for (qsizetype size = 0; size < bytes.size(); ++size)
        ASSERT_FALSE(ReadMp4Contents(write(bytes.left(size))).complete) << size;
    EXPECT_FALSE(ReadMp4Contents(dir.filePath("missing.mp4")).complete);
}

TEST_F(Mp4Files, HostileBoxesAreRefusedWithoutReadingPastThem) {
    const QByteArray good = file(kVideo);
    const qsizetype moovAt = good.indexOf("moov") - 4;
    auto withSizeAt = [&](qsizetype at, const QByteArray& size) {
        QByteArray b = good;
        b.replace(at, size.size(), size);
        return b;
    };
    const QList<QByteArray> hostile{
        withSizeAt(moovAt, be32(4)),                            // smaller than its own header
        withSizeAt(moovAt, be32(0x7fffffff)),                   // far past the end
        withSizeAt(moovAt, be32(1)),                            // 64-bit size of garbage
        withSizeAt(good.indexOf("stts") + 8, be32(0xffffffff)), // absurd count of entries
        file(QByteArray()),                                     // no track
        box("ftyp", "isom") + box("mdat", "x"),                 // no movie box
        box("ftyp", "isom") + movie(kVideo, 1),                 // no media data
        QByteArray("RIFF\x10\0\0\0AVI LIST", 16),               // not an MP4
    };
    for (qsizetype i = 0; i < hostile.size(); ++i) {
        const Mp4Contents c = ReadMp4Contents(write(hostile[i]));
        EXPECT_FALSE(c.complete) << i;
        EXPECT_FALSE(c.problem.isEmpty()) << i;
    }
    // Boxes nested without end.
    QByteArray deep = kVideo;
    for (int i = 0; i < 20; ++i)
        deep = box("trak", deep);
    EXPECT_FALSE(ReadMp4Contents(write(file(deep))).complete);
}

TEST_F(Mp4Files, ALengthBeyondAQint64OfMillisecondsIsNoLength) {
    // A version 1 track header with the largest 64-bit duration, in the movie's clock of 1000.
    const QByteArray tkhd = box("tkhd", be32(0x01000000) + QByteArray(24, '\0') +
                                            QByteArray(8, '\xff') + QByteArray(60, '\0'));
    QByteArray boxes = kVideo.mid(8);
    boxes.replace(0, 92, tkhd);
    const Mp4Contents c = ReadMp4Contents(write(file(box("trak", boxes))));
    ASSERT_EQ(c.tracks.size(), 1);
    EXPECT_EQ(c.tracks[0].trackDuration, ~quint64(0));
    EXPECT_EQ(c.durationMs("vide"), -1);
}

TEST_F(Mp4Files, APieceMustBeOneVideoTrackOfExactlyItsFrames) {
    const Mp4Container mp4;
    const FrameRate ntsc = FrameRate::ntsc();
    const QString piece = write(file(kVideo));
    EXPECT_EQ(mp4.pieceProblem(piece, 100, ntsc), QString());
    EXPECT_FALSE(mp4.pieceProblem(piece, 99, ntsc).isEmpty());
    EXPECT_FALSE(mp4.pieceProblem(piece, 100, FrameRate{25, 1}).isEmpty());
    // One frame held for 100 frames' time is a whole still.
    EXPECT_EQ(mp4.pieceProblem(write(file(track("vide", 30000, 1, 100100, 3337))), 100, ntsc),
              QString());
    EXPECT_FALSE(
        mp4.pieceProblem(write(file(kVideo + track("soun", 44100, 1, 1, 1))), 100, ntsc).isEmpty());
    EXPECT_FALSE(mp4.pieceProblem(write(file(kVideo).left(200)), 100, ntsc).isEmpty());
    // The track's clock, as ffmpeg chooses it.
    EXPECT_EQ(Mp4TrackTimescale(ntsc), 30000);
    EXPECT_EQ(Mp4TrackTimescale(FrameRate{25, 1}), 12800);
}
