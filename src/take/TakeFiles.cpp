#include "take/TakeFiles.h"

#include "captions/CaptionsFile.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "studio/TimelineFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cq {

namespace {

// Text pictures are made in the work folder; other media live where the user keeps them.
QStringList workFolderFileNames(const QString& workFolder, const QList<EventRow>& rows) {
    const QString base = QDir::cleanPath(QDir(workFolder).absolutePath());
    QStringList names;
    for (const EventRow& row : rows) {
        const QFileInfo file(row.fileSpec);
        if (!row.fileSpec.isEmpty() && QDir::cleanPath(file.absolutePath()) == base)
            names << file.fileName();
    }
    return names;
}

} // namespace

TakeFiles::TakeFiles(QString workFolder, QString voiceFileSpec)
    : m_workFolder(std::move(workFolder)), m_voiceFileSpec(std::move(voiceFileSpec)) {}

QString TakeFiles::journalFileSpec() const {
    return QDir(m_workFolder).filePath(QString::fromLatin1(kTakeJournalFileName));
}

QString TakeFiles::captionsFileSpec() const {
    return CaptionsFileIn(m_workFolder);
}

bool TakeFiles::isUnsaved() const {
    return QFileInfo(journalFileSpec()).isFile();
}

QList<EventRow> TakeFiles::journalRows() const {
    return TakeJournalRows(ReadFileToBytes(journalFileSpec()), m_workFolder);
}

QList<EventRow> TakeJournalRows(const QByteArray& journal, const QString& workFolder) {
    // A line without its end was being written when the studio ended.
    const QByteArray bytes = journal.left(journal.lastIndexOf('\n') + 1);
    QString error;
    const QString text = DecodeTimelineBytes(bytes, &error);
    // The rows up to the first that cannot be read, each line read once: a long journal with a
    // damaged row early on is read as quickly as a whole one.
    QList<EventRow> rows;
    for (const QString& line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts)) {
        const TimelineReadResult read = ParseTimelineText(line, workFolder);
        if (!read.ok())
            break;
        rows << read.rows;
    }
    return rows;
}

KeptTake TakeFiles::restore() const {
    KeptTake take;
    take.rows = journalRows();
    if (!QFileInfo(m_voiceFileSpec).isFile())
        take.voiceProblem = QStringLiteral("no voice was recorded");
    else if (RepairWavLength(m_voiceFileSpec, &take.voiceProblem))
        take.voiceMs = WavDurationMs(m_voiceFileSpec);
    const ReadCues captions = ReadCaptionsFile(captionsFileSpec());
    take.captions = captions.cues;
    take.captionsProblem = captions.problem;
    return take;
}

void TakeFiles::markSaved() const {
    QFile::remove(journalFileSpec());
}

void TakeFiles::discard() const {
    const QDir work(m_workFolder);
    for (const QString& name : workFolderFileNames(m_workFolder, journalRows()))
        QFile::remove(work.filePath(name));
    QFile::remove(m_voiceFileSpec);
    QFile::remove(captionsFileSpec());
    QFile::remove(journalFileSpec());
}

QStringList TakeFiles::keptFileNames() const {
    if (!isUnsaved())
        return {};
    QStringList names = workFolderFileNames(m_workFolder, journalRows())
                        << QFileInfo(m_voiceFileSpec).fileName()
                        << QString::fromLatin1(kTakeJournalFileName);
    if (QFileInfo::exists(captionsFileSpec()))
        names << QString::fromLatin1(kCaptionsFileName);
    return names;
}

} // namespace cq
