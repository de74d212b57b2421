#include "platform/WavFormat.h"

#include "platform/RegularFiles.h"
#include "platform/RiffChunk.h"

#include <QFile>
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

constexpr quint16 kPcm = 1;
constexpr quint16 kFloat = 3;
constexpr quint16 kALaw = 6;
constexpr quint16 kMuLaw = 7;
constexpr quint16 kExtensible = 0xFFFE;

// Fills the sample format from a "fmt " chunk; returns why it is unusable, or nothing.
QString readFormat(const QByteArray& fmt, WavInfo& info) {
    if (fmt.size() < 16)
        return QStringLiteral("its format chunk is too short");
    info.formatTag = RiffGet16(fmt, 0);
    info.channels = RiffGet16(fmt, 2);
    info.samplesPerSecond = RiffGet32(fmt, 4);
    info.byteRate = RiffGet32(fmt, 8);
    info.blockAlign = RiffGet16(fmt, 12);
    info.bitsPerSample = RiffGet16(fmt, 14);
    quint16 tag = info.formatTag;
    if (tag == kExtensible) {
        if (fmt.size() < 26)
            return QStringLiteral("its extensible format chunk is too short");
        tag = RiffGet16(fmt, 24); // the first two bytes of the sub-format GUID
    }
    if (tag != kPcm && tag != kFloat && tag != kALaw && tag != kMuLaw)
        return QStringLiteral("its samples are compressed (format %1), not PCM").arg(tag);
    if (info.channels == 0 || info.samplesPerSecond == 0 || info.bitsPerSample == 0)
        return QStringLiteral("its format names no channels, rate or sample size");
    const quint32 expectedAlign = info.channels * ((info.bitsPerSample + 7u) / 8u);
    if (info.blockAlign != expectedAlign)
        return QStringLiteral("its block align %1 does not match %2 channels of %3 bits")
            .arg(info.blockAlign)
            .arg(info.channels)
            .arg(info.bitsPerSample);
    if (quint64(info.byteRate) != quint64(info.samplesPerSecond) * expectedAlign)
        return QStringLiteral("its byte rate %1 does not match %2 Hz x %3 bytes per frame")
            .arg(info.byteRate)
            .arg(info.samplesPerSecond)
            .arg(expectedAlign);
    return {};
}

WavInfo failed(WavInfo info, const QString& fileSpec, const QString& why) {
    info.error = QStringLiteral("\"%1\" cannot be read as a WAV file: %2.").arg(fileSpec, why);
    info.durationMs = -1;
    return info;
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

WavInfo ReadWavInfo(const QString& fileSpec) {
    WavInfo info;
    if (!IsRegularFile(fileSpec))
        return failed(info, fileSpec,
                      QFile::exists(fileSpec) ? QStringLiteral("it is not a regular file")
                                              : QStringLiteral("it does not exist"));
    QFile f(fileSpec);
    if (!f.open(QIODevice::ReadOnly))
        return failed(info, fileSpec, f.errorString());
    const QByteArray riff = f.read(12);
    if (riff.size() < 12 || !riff.startsWith("RIFF") || riff.mid(8, 4) != "WAVE")
        return failed(info, fileSpec, QStringLiteral("it does not begin with RIFF WAVE"));
    bool haveFormat = false;
    for (;;) {
        RiffChunkHeader chunk;
        if (!ReadRiffChunkHeader(f, chunk))
            return failed(info, fileSpec,
                          haveFormat ? QStringLiteral("it has no data chunk")
                                     : QStringLiteral("it has no format chunk"));
        const quint32 size = chunk.size;
        if (chunk.id == "fmt ") {
            const QString why = readFormat(f.read(qMin<quint32>(size, 1024)), info);
            if (!why.isEmpty())
                return failed(info, fileSpec, why);
            haveFormat = true;
            if (!f.seek(f.pos() - qMin<quint32>(size, 1024) + chunk.paddedSize()))
                return failed(info, fileSpec, QStringLiteral("its format chunk is cut short"));
        } else if (chunk.id == "data") {
            if (!haveFormat)
                return failed(info, fileSpec,
                              QStringLiteral("its samples come before their format"));
            const qint64 available = f.size() - f.pos();
            qint64 bytes =
                (size == 0 || size == 0xFFFFFFFFu || size > available) ? available : qint64(size);
            bytes -= bytes % info.blockAlign; // a torn last frame is no sound
            info.dataOffset = f.pos();
            info.dataBytes = bytes;
            info.durationMs =
                bytes * 1000 / (qint64(info.samplesPerSecond) * qint64(info.blockAlign));
            return info;
        } else if (!f.seek(f.pos() + chunk.paddedSize()) || f.pos() > f.size()) {
            return failed(info, fileSpec, QStringLiteral("a chunk runs past the end of the file"));
        }
    }
}

bool RepairWavLength(const QString& fileSpec, QString* error) {
    const WavInfo info = ReadWavInfo(fileSpec);
    if (!info.ok()) {
        *error = info.error;
        return false;
    }
    QFile f(fileSpec);
    if (!f.open(QIODevice::ReadWrite)) {
        *error = QStringLiteral("\"%1\" cannot be written: %2").arg(fileSpec, f.errorString());
        return false;
    }
    qint64 bytes = qMin<qint64>(f.size() - info.dataOffset, 0xFFFFFFFFll - info.dataOffset);
    bytes -= bytes % info.blockAlign;
    char size[4];
    bool ok = f.resize(info.dataOffset + bytes);
    qToLittleEndian(quint32(bytes), size);
    ok = ok && f.seek(info.dataOffset - 4) && f.write(size, 4) == 4;
    qToLittleEndian(quint32(info.dataOffset + bytes - 8), size);
    ok = ok && f.seek(4) && f.write(size, 4) == 4 && f.flush();
    if (!ok)
        *error = QStringLiteral("\"%1\" cannot be written: %2").arg(fileSpec, f.errorString());
    return ok;
}

qint64 WavDurationMs(const QString& fileSpec) {
    return ReadWavInfo(fileSpec).durationMs;
}

} // namespace cq
