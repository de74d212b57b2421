#include "platform/WavLength.h"

#include <QFile>
#include <QtEndian>

namespace cq {

qint64 WavDurationMs(const QString& fileSpec) {
    QFile f(fileSpec);
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray riff = f.read(12);
    if (riff.size() < 12 || !riff.startsWith("RIFF") || riff.mid(8, 4) != "WAVE")
        return -1;
    quint32 byteRate = 0;
    for (;;) {
        const QByteArray chunk = f.read(8);
        if (chunk.size() < 8)
            return -1;
        const quint32 size = qFromLittleEndian<quint32>(chunk.constData() + 4);
        if (chunk.startsWith("fmt ")) {
            const QByteArray fmt = f.read(size);
            if (fmt.size() < 16)
                return -1;
            byteRate = qFromLittleEndian<quint32>(fmt.constData() + 8);
            if (size % 2)
                f.read(1);
        } else if (chunk.startsWith("data")) {
            if (byteRate == 0)
                return -1;
            const qint64 available = f.size() - f.pos();
            const qint64 bytes =
                (size == 0 || size == 0xFFFFFFFFu || size > available) ? available : qint64(size);
            return bytes * 1000 / byteRate;
        } else if (!f.seek(f.pos() + size + (size % 2))) {
            return -1;
        }
    }
}

} // namespace cq
