#include "take/TakeJournal.h"

#include "platform/TextFiles.h"
#include "studio/TimelineFile.h"

#include <QFileInfo>

#include <unistd.h>

namespace cq {

TakeJournal::TakeJournal(QObject* parent) : QObject(parent) {
    m_syncTimer.setInterval(kSyncIntervalMs);
    connect(&m_syncTimer, &QTimer::timeout, this, [this] {
        if (m_unsynced && !sync())
            fail(QStringLiteral("the journal could not be synced to the disk"));
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
    m_unsynced = true;
    if (!sync()) {
        m_error = QStringLiteral("the journal could not be synced to the disk");
        m_file.close();
        return false;
    }
    m_syncTimer.start();
    return true;
}

bool TakeJournal::append(const EventRow& row) {
    if (!m_file.isOpen())
        return false;
    const QByteArray line = (row.rowText() + QStringLiteral("\r\n")).toUtf8();
    if (m_file.write(line) != line.size())
        return fail(m_file.errorString());
    m_unsynced = true;
    return true;
}

void TakeJournal::finish() {
    m_syncTimer.stop();
    if (!m_file.isOpen())
        return;
    sync();
    m_file.close();
}

bool TakeJournal::rewrite(const QString& fileSpec, const QList<EventRow>& rows) {
    return WriteWholeFile(TimelineText(rows, QFileInfo(fileSpec).absolutePath()).toUtf8(),
                          fileSpec);
}

bool TakeJournal::sync() {
    if (!m_file.isOpen() || ::fsync(m_file.handle()) != 0)
        return false;
    m_unsynced = false;
    return true;
}

bool TakeJournal::fail(const QString& why) {
    m_error = why;
    m_syncTimer.stop();
    m_file.close();
    emit writeFailed(why);
    return false;
}

} // namespace cq
