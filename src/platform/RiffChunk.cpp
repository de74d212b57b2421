#include "platform/RiffChunk.h"

#include <QIODevice>
#include <QtEndian>

namespace cq {

bool ReadRiffChunkHeader(QIODevice& device, RiffChunkHeader& header) {
    const QByteArray bytes = device.read(8);
    if (bytes.size() < 8)
        return false;
    header.id = bytes.left(4);
    header.size = RiffGet32(bytes, 4);
    return true;
}

quint16 RiffGet16(const QByteArray& bytes, qsizetype at) {
    return at >= 0 && at + 2 <= bytes.size() ? qFromLittleEndian<quint16>(bytes.constData() + at)
                                             : 0;
}

quint32 RiffGet32(const QByteArray& bytes, qsizetype at) {
    return at >= 0 && at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + at)
                                             : 0;
}

} // namespace cq
