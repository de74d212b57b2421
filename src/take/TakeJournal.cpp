#include "take/TakeJournal.h"

#include "platform/OutsideText.h"
#include "platform/TextFiles.h"
#include "studio/TimelineFile.h"

#include <QFileInfo>

namespace cq {

JournalRead ReadJournalBytes(QByteArray bytes, const QString& workFolder) {
    JournalRead read;
    // A line without its end was being written when the studio ended.
    bytes.truncate(bytes.lastIndexOf('\n') + 1);
    // Each line is decoded by itself: a line spoilt on the disk costs that click alone.
    const QList<QByteArray> lines = bytes.split('\n');
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        const QByteArray& line = lines[i];
        if (line.isEmpty() || line == "\r")
            continue;
        const OutsideText decoded = DecodeOutsideText(line.endsWith('\r') ? line.chopped(1) : line);
        QString why = QStringLiteral("the line %1").arg(decoded.problem);
        const std::optional<TimelineEvent> event =
            decoded.ok() ? ParseTimelineLine(decoded.text, workFolder, &why) : std::nullopt;
        if (event) {
            read.rows << *event;
        } else if (read.unreadable++ == 0) {
            read.firstProblem = QStringLiteral("line %1: %2").arg(i + 1).arg(why);
        }
    }
    return read;
}

TakeJournal::TakeJournal(QObject* parent) : QObject(parent) {
    m_syncTimer.setInterval(kSyncIntervalMs);
    connect(&m_syncTimer, &QTimer::timeout, this, [this] {
        if (m_unsynced)
            m_syncer.requestSync();
        m_unsynced = false;
    });
    // Also after finish: the clicks of the take may not be on the disk.
    connect(&m_syncer, &FileSyncer::syncFailed, this, [this](const QString& why) {
        if (m_error.isEmpty()) // one report per take
            fail(QStringLiteral("the journal could not be synced to the disk: %1").arg(why));
    });
}

TakeJournal::~TakeJournal() {
    finish();
}

bool TakeJournal::start(const QString& fileSpec) {
    finish();
    m_error.clear();
    m_file.setFileName(fileSpec);
    // Unbuffered: every row reaches the kernel with its own write, not at the next flush.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        m_error = m_file.errorString();
        return false;
    }
    QString why;
    if (!m_syncer.follow(m_file.handle(), &why)) {
        m_error = why;
        m_file.close();
        return false;
    }
    // The new, empty file's name goes to the disk too.
    m_syncer.requestSync();
    m_unsynced = false;
    m_syncTimer.start();
    return true;
}

bool TakeJournal::append(const TimelineEvent& event, int number) {
    if (!m_file.isOpen())
        return false;
    const QString folder = QFileInfo(m_file.fileName()).absolutePath();
    const QByteArray line = (TimelineLine(event, number, folder) + QStringLiteral("\r\n")).toUtf8();
    if (m_file.write(line) != line.size())
        return fail(m_file.errorString());
    m_unsynced = true;
    return true;
}

void TakeJournal::finish() {
    m_syncTimer.stop();
    if (!m_file.isOpen())
        return;
    // The last sync runs on the syncer's thread: closing needs no sync, the rows are already in
    // the system's hands, and a failure still comes back by writeFailed.
    m_syncer.release();
    m_file.close();
}

bool TakeJournal::rewrite(const QString& fileSpec, const QList<TimelineEvent>& rows) {
    return WriteWholeFile(TimelineText(rows, QFileInfo(fileSpec).absolutePath()).toUtf8(),
                          fileSpec);
}

bool TakeJournal::fail(const QString& why) {
    m_error = why;
    m_syncTimer.stop();
    m_syncer.release();
    m_file.close();
    emit writeFailed(why);
    return false;
}

} // namespace cq
