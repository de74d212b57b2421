#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace cq {

// The WAV format of the whole program: the header the recorder writes, and the one reader that
// Open Project, the render and the tests use to learn what a WAV file holds.

// The canonical 44-byte header of a PCM WAV file: RIFF, a 16-byte format chunk, one data chunk.
QByteArray WavHeader(quint32 samplesPerSecond, quint16 channels, quint16 bitsPerSample,
                     quint32 dataBytes);

// What the chunks of a WAV file say. The length comes from the data's size and the sample
// format, never from the header's byte rate alone, which another tool may have written wrong.
struct WavInfo {
    QString error; // why the file cannot be used as sound; empty when it can
    quint16 formatTag = 0;
    quint16 channels = 0;
    quint32 samplesPerSecond = 0;
    quint32 byteRate = 0;
    quint16 blockAlign = 0;
    quint16 bitsPerSample = 0;
    qint64 dataOffset = -1;
    qint64 dataBytes = 0; // the samples present, whole frames only
    qint64 durationMs = -1;

    bool ok() const { return error.isEmpty(); }
};

// Walks the chunks (LIST, fact and any other chunk before or after the samples), checks the byte
// rate and block align against the format, and accepts the PCM forms ffmpeg writes (integer,
// float, A-law, mu-law, also as WAVE_FORMAT_EXTENSIBLE). A data chunk whose size was never filled
// in counts up to the end of the file. Anything but a regular file is refused without opening
// it, so a FIFO never blocks the caller.
WavInfo ReadWavInfo(const QString& fileSpec);

// Makes the header of a WAV file whose samples are its last chunk (as a recording is written)
// say how long it is, from the file's size: a recording whose program died before its header
// was finished plays to its last whole frame again. A torn last frame is cut off. False with
// *error set when the file is no WAV file or cannot be written.
bool RepairWavLength(const QString& fileSpec, QString* error);

// The playing time in milliseconds; -1 when ReadWavInfo refuses the file.
qint64 WavDurationMs(const QString& fileSpec);

} // namespace cq
