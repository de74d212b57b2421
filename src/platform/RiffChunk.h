#pragma once

#include <QByteArray>
#include <QtGlobal>

class QIODevice;

namespace cq {

// The header of one chunk of a RIFF file (WAV, AVI): four letters and a little-endian size.
// A chunk of odd size is followed by one byte of padding.
struct RiffChunkHeader {
    QByteArray id;
    quint32 size = 0;

    qint64 paddedSize() const { return qint64(size) + (size & 1); }
};

// Reads the eight header bytes at the device's position; false when fewer are left.
bool ReadRiffChunkHeader(QIODevice& device, RiffChunkHeader& header);

// Little-endian fields of a chunk's bytes; 0 where the bytes end too soon.
quint16 RiffGet16(const QByteArray& bytes, qsizetype at);
quint32 RiffGet32(const QByteArray& bytes, qsizetype at);

} // namespace cq
