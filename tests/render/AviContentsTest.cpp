// The AVI reader on files that no writer makes: it says what is wrong instead of ending the
// studio.
#include "render/AviContents.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace cq;

namespace {

QByteArray chunk(const char* id, const QByteArray& body) {
    char size[4];
    qToLittleEndian(quint32(body.size()), size);
    return QByteArray(id, 4) + QByteArray(size, 4) + body;
}

} // namespace

TEST(AviContents, AClockThatMakesAStreamLastBeyondAQint64IsNoLength) {
    AviStream s;
    s.scale = 0xFFFFFFFF;
    s.rate = 1;
    s.chunks = 10000000;
    EXPECT_EQ(s.durationMs(), -1);
    s.scale = 1001;
    s.rate = 30000;
    EXPECT_EQ(s.durationMs(), 333666667);
}

TEST(AviContents, ListsNestedBeyondAnyWriterAreRefusedWithoutExhaustingTheStack) {
    // Two hundred thousand "rec " lists inside each other: 2.4 MB, far deeper than the stack.
    const int depth = 200000;
    const QByteArray frame = chunk("00dc", "frame!");
    QByteArray nested;
    for (int level = 0; level < depth; ++level) {
        // The list's size counts "rec ", the lists inside it and the frame.
        const qint64 inside = 4 + qint64(depth - level - 1) * 12 + frame.size();
        char size[4];
        qToLittleEndian(quint32(inside), size);
        nested += QByteArray("LIST", 4) + QByteArray(size, 4) + "rec ";
    }
    nested += frame;
    const QByteArray avi = chunk("RIFF", "AVI " + chunk("LIST", "movi" + nested));
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QFile file(dir.filePath("deep.avi"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(avi) == avi.size());
    file.close();

    const AviContents read = ReadAviContents(file.fileName());
    EXPECT_FALSE(read.complete);
    EXPECT_FALSE(read.problem.isEmpty());

    // One "rec " list, as ffmpeg writes them, is read.
    const QByteArray shallow =
        chunk("RIFF", "AVI " + chunk("LIST", "movi" + chunk("LIST", "rec " + chunk("00dc", "fr"))));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                file.write(shallow) == shallow.size());
    file.close();
    const AviContents one = ReadAviContents(file.fileName());
    EXPECT_TRUE(one.complete) << one.problem.toStdString();
    EXPECT_EQ(one.videoFrames, 1);
}
