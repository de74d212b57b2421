#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

namespace cq {

// What the render wrote beside its results (the subtitle pairs), each file by where it landed with
// a digest of its bytes, in a small record that outlives the studio. Only a file that still holds
// exactly what the studio wrote there is the studio's to replace or remove: a user's own X.srt, or
// one edited since, is left alone. The record is read with bounds and written whole, under a lock,
// so that two renders at once keep each other's entries.
class WrittenFiles {
public:
    // At most this many files are remembered; the oldest are forgotten first.
    static constexpr int kMaxEntries = 400;

    // recordFile: empty remembers nothing, so no file counts as the studio's.
    explicit WrittenFiles(QString recordFile);

    // Whether the file exists and holds what the studio last wrote there.
    bool wroteAsItIs(const QString& file) const;
    // Remembers the files as they are now; false when the record could not be written.
    bool remember(const QStringList& files);
    // Forgets the files (after removing them).
    void forget(const QStringList& files);

private:
    using Entries = QList<QPair<QString, QByteArray>>; // landing path, digest; oldest first
    Entries read() const;
    bool write(const Entries& entries) const;
    bool update(const QStringList& files, bool keep);

    QString m_record;
};

// The SHA-256 of a regular file's bytes, read in bounded steps; empty when it cannot be read or is
// larger than any file the studio writes beside a result.
QByteArray DigestOfFile(const QString& file);

} // namespace cq
