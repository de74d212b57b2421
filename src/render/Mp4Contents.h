#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace cq {

// One track of an MP4 file, as its boxes describe it.
struct Mp4Track {
    QByteArray handler;         // "vide", "soun", ...
    quint64 trackDuration = 0;  // tkhd: the presented length, after edits, in the movie's clock
    quint32 mediaTimescale = 0; // mdhd
    quint64 mediaDuration = 0;  // mdhd: the media's own length
    qint64 samples = 0;         // stts: how many samples the track holds
    quint64 sampleTime = 0;     // stts: the samples' durations added up, in the media's clock
};

// What an MP4 file holds, read from its top-level boxes and the movie box; the media data is
// only measured, never read.
struct Mp4Contents {
    bool complete = false; // every box is whole and the movie box describes its tracks
    QString problem;       // why the file is not complete; empty when it is
    bool moovBeforeMdat = false;
    quint32 movieTimescale = 0;
    quint64 movieDuration = 0;
    QList<Mp4Track> tracks;

    // The first track of a handler type; nullptr when there is none.
    const Mp4Track* track(const char* handler) const;
    // A track's presented length in milliseconds; -1 when there is no such track or its length
    // is beyond a qint64 of milliseconds.
    qint64 durationMs(const char* handler) const;
};

// Walks the top-level boxes of an MP4 file and reads its movie box; refuses a file whose boxes
// run past its end, are smaller than their own header, or a movie box too large to be real.
Mp4Contents ReadMp4Contents(const QString& fileSpec);

} // namespace cq
