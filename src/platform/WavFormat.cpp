#include "platform/WavFormat.h"

#include <QtEndian>

namespace cq {

namespace {
void put32(QByteArray& out, quint32 v) {
    char b[4];
    qToLittleEndian(v, b);
    out.append(b, 4);
}
void put16(QByteArray& out, quint16 v) {
    char b[2];
    qToLittleEndian(v, b);
    out.append(b, 2);
}
} // namespace

QByteArray WavHeader(quint32 samplesPerSecond, quint16 channels, quint16 bitsPerSample,
                     quint32 dataBytes) {
    const quint16 blockAlign = static_cast<quint16>(channels * bitsPerSample / 8);
    QByteArray h;
    h.reserve(44);
    h.append("RIFF", 4);
    put32(h, 36 + dataBytes);
    h.append("WAVEfmt ", 8);
    put32(h, 16);
    put16(h, 1); // PCM
    put16(h, channels);
    put32(h, samplesPerSecond);
    put32(h, samplesPerSecond * blockAlign);
    put16(h, blockAlign);
    put16(h, bitsPerSample);
    h.append("data", 4);
    put32(h, dataBytes);
    return h;
}

} // namespace cq
