#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace cq {

// One stream of an AVI file: its header's clock, and what its chunks really hold.
struct AviStream {
    QByteArray type;        // "vids" or "auds"
    quint32 scale = 0;      // one unit of the stream lasts scale / rate seconds
    quint32 rate = 0;       //
    quint32 sampleSize = 0; // 0: each chunk is one unit; else bytes per unit
    qint64 chunks = 0;      // including empty chunks, which hold the previous frame
    qint64 bytes = 0;

    // Milliseconds the stream lasts by its chunks; -1 when its header gives no clock or one that
    // makes it last beyond a qint64 of milliseconds.
    qint64 durationMs() const;
};

// What an AVI file really holds, read from its chunks rather than its header: the header's
// frame count is written before the frames and stays when the file is cut short.
struct AviContents {
    bool complete = false; // the RIFF sizes match the file and every chunk is whole
    qint64 videoFrames = 0;
    QList<AviStream> streams; // in the order of their numbers
    QString problem;          // why the file is not complete; empty when it is

    bool holds(qint64 frames) const { return complete && videoFrames == frames; }
    // The longest stream of a type, in milliseconds; -1 when there is none.
    qint64 durationMs(const char* type) const;
};

// Walks the RIFF chunks of an AVI file: the stream headers, and every chunk of its movi lists.
AviContents ReadAviContents(const QString& fileSpec);

} // namespace cq
