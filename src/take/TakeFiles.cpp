#include "take/TakeFiles.h"

#include "captions/CaptionsFile.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "take/TakeJournal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cq {

namespace {

// Text pictures are made in the work folder; other media live where the user keeps them.
QStringList workFolderFileNames(const QString& workFolder, const QList<TimelineEvent>& rows) {
    const QString base = QDir::cleanPath(QDir(workFolder).absolutePath());
    QStringList names;
    for (const TimelineEvent& row : rows) {
        const QFileInfo file(row.file);
        if (!row.file.isEmpty() && QDir::cleanPath(file.absolutePath()) == base)
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

QList<TimelineEvent> TakeFiles::journalRows() const {
    return ReadJournalBytes(ReadFileToBytes(journalFileSpec()), m_workFolder).rows;
}

KeptTake TakeFiles::restore() const {
    KeptTake take;
    const JournalRead journal = ReadJournalBytes(ReadFileToBytes(journalFileSpec()), m_workFolder);
    take.rows = journal.rows;
    take.unreadableRows = journal.unreadable;
    take.rowsProblem = journal.firstProblem;
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
