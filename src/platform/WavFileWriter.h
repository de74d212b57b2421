#pragma once

#include "platform/FileSyncer.h"

#include <QByteArray>
#include <QFile>
#include <QString>

namespace cq {

// Writes a 16-bit PCM WAV file while it is being recorded. The samples go to disk as they
// arrive and the 44-byte header is brought up to date and synced to the disk every so often, so
// a process that dies (or a machine that loses power) mid-recording leaves a file that plays up
// to the last header update. The syncs run on the syncer's thread, never holding up the writer's;
// their failures come back by syncer().syncFailed.
class WavFileWriter {
public:
    WavFileWriter(quint32 samplesPerSecond, quint16 channels);
    ~WavFileWriter();
    WavFileWriter(const WavFileWriter&) = delete;
    WavFileWriter& operator=(const WavFileWriter&) = delete;

    // Creates (or replaces) the file with an empty data chunk. False with errorString() set when
    // the file cannot be created or written.
    bool open(const QString& fileSpec);
    // Appends sample bytes; the header is rewritten when headerEveryBytes have arrived since
    // the last update. False when the disk refused the bytes; what was written before stays.
    bool append(const QByteArray& bytes);
    // Brings the header up to date and asks for a sync of the file; the file stays open.
    bool updateHeader();
    // Final header, file closed (its last sync still to come). Safe to call twice.
    bool close();

    bool isOpen() const { return m_file.isOpen(); }
    qint64 dataBytes() const { return m_dataBytes; }
    QString errorString() const { return m_error; }
    QString fileName() const { return m_file.fileName(); }
    void setHeaderEveryBytes(qint64 bytes) { m_headerEvery = bytes; }
    FileSyncer& syncer() { return m_syncer; }

private:
    bool fail(const QString& why);

    QFile m_file;
    FileSyncer m_syncer{true};
    quint32 m_rate;
    quint16 m_channels;
    qint64 m_dataBytes = 0;
    qint64 m_sinceHeader = 0;
    qint64 m_headerEvery;
    QString m_error;
};

} // namespace cq
