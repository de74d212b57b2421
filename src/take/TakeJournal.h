#pragma once

#include "platform/FileSyncer.h"
#include "studio/TimelineEvent.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

namespace cq {

// The events of a journal's bytes. Every line that can be read is kept; one that cannot (spoilt on
// the disk, or of another version) is counted and left out, and a last line without its end (cut
// short by the end of the studio) is dropped. Relative file names are of the work folder.
struct JournalRead {
    QList<TimelineEvent> rows;
    int unreadable = 0;
    QString firstProblem; // "line 3: ..." for the first unreadable line
};
JournalRead ReadJournalBytes(QByteArray bytes, const QString& workFolder);

// The clicks of a take as they happen: each logged row goes to the journal file at once (one
// write, so a killed studio loses no click) and the file is synced to the disk at least once a
// second (so a power cut loses at most that second), on a thread of its own: a slow disk holds up
// neither the window nor the microphone. Lines are the ones Timeline.txt holds, with CR LF ends;
// the journal is written and read here only.
class TakeJournal : public QObject {
    Q_OBJECT
public:
    static constexpr int kSyncIntervalMs = 500;

    explicit TakeJournal(QObject* parent = nullptr);
    ~TakeJournal() override;

    // Creates (or empties) the journal for a new take. False with errorString() set when the
    // file cannot be made; a sync that fails later is reported by writeFailed.
    bool start(const QString& fileSpec);
    // Writes the event numbered `number` (from 1) at once. False (and writeFailed emitted, the
    // journal closed) when the disk refused it.
    bool append(const TimelineEvent& event, int number);
    // Closes the file and has it synced without waiting for the disk; the file stays as the mark
    // of a take not yet saved.
    void finish();
    // Replaces the whole journal of a stopped take (rows corrected in the grid).
    bool rewrite(const QString& fileSpec, const QList<TimelineEvent>& rows);

    bool isOpen() const { return m_file.isOpen(); }
    QString errorString() const { return m_error; }
    FileSyncer& syncer() { return m_syncer; }

signals:
    void writeFailed(const QString& why);

private:
    bool fail(const QString& why);

    QFile m_file;
    FileSyncer m_syncer{false};
    QTimer m_syncTimer;
    bool m_unsynced = false;
    QString m_error;
};

} // namespace cq
