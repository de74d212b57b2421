#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace cq {

// The canonical 44-byte header of a PCM WAV file: RIFF, a 16-byte format chunk, one data chunk.
QByteArray WavHeader(quint32 samplesPerSecond, quint16 channels, quint16 bitsPerSample,
                     quint32 dataBytes);

} // namespace cq
