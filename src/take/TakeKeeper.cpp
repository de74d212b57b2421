#include "take/TakeKeeper.h"

#include "captions/CaptionTableModel.h"
#include "captions/CaptionsFile.h"
#include "take/RecordingController.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"

#include <QFile>
#include <QFileInfo>

namespace cq {

TakeKeeper::TakeKeeper(RecordingController& controller, EventLogger& logger,
                       CaptionTableModel& captions, const QString& workFolder, QObject* parent)
    : QObject(parent), m_controller(controller), m_logger(logger), m_captions(captions),
      m_files(workFolder, controller.voiceFileSpec()), m_journal(new TakeJournal(this)) {
    connect(&m_controller, &RecordingController::recordingChanged, this,
            &TakeKeeper::onRecordingChanged);
    connect(&m_logger, &EventLogger::eventLogged, this, &TakeKeeper::onRowLogged);
    connect(&m_logger.grid(), &EventGridModel::dataChanged, this, &TakeKeeper::onRowsCorrected);
    connect(&m_logger.grid(), &EventGridModel::rowsRemoved, this, &TakeKeeper::onRowsCorrected);
    connect(m_journal, &TakeJournal::writeFailed, this, &TakeKeeper::stopOnJournalFailure);
    connect(&m_captions, &CaptionTableModel::cuesChanged, this, &TakeKeeper::onCaptionsChanged);
}

void TakeKeeper::onRecordingChanged(bool recording) {
    if (!recording) {
        m_journal->finish();
        // A take without a voice or a click holds nothing to keep.
        if (m_logger.grid().rowCount() == 0 && !QFileInfo(m_files.voiceFileSpec()).isFile())
            m_files.markSaved();
        return;
    }
    // A new take starts without captions: the old ones were of another voice.
    m_captions.clear();
    QFile::remove(m_files.captionsFileSpec());
    if (!m_journal->start(m_files.journalFileSpec()))
        stopOnJournalFailure(m_journal->errorString());
}

void TakeKeeper::onRowLogged(int row) {
    m_journal->append(m_logger.grid().row(row), row + 1);
}

void TakeKeeper::onRowsCorrected() {
    if (!m_controller.gblnRecording() && isUnsaved())
        rewriteJournal(QStringLiteral("the recording would come back with its events as they "
                                      "were before you corrected them"));
}

void TakeKeeper::rewriteJournal(const QString& lost) {
    if (m_journal->rewrite(m_files.journalFileSpec(), m_logger.grid().rows()))
        return;
    emit journalFailed(QStringLiteral("Events"),
                       QStringLiteral("\"%1\" could not be written; the disk may be full. If the "
                                      "studio ended now, %2. Free some space and save the project.")
                           .arg(m_files.journalFileSpec(), lost));
}

void TakeKeeper::onCaptionsChanged() {
    if (!SaveCaptionsFile(m_captions.cues(), m_files.captionsFileSpec()))
        emit captionsFailed(QStringLiteral("Captions"),
                            QStringLiteral("The captions could not be written to \"%1\"; the "
                                           "disk may be full. Save the project to keep them.")
                                .arg(m_files.captionsFileSpec()));
    if (m_controller.gblnRecording() || isUnsaved())
        return;
    // Captions of a saved take (or of an opened project) changed: the take is worth keeping again
    // until it is saved, unless there is no take at all.
    if (m_logger.grid().rowCount() > 0 || QFileInfo(m_files.voiceFileSpec()).isFile())
        rewriteJournal(QStringLiteral("it would not ask first, and the changed captions would be "
                                      "lost"));
}

void TakeKeeper::stopOnJournalFailure(const QString& why) {
    if (m_controller.gblnRecording())
        m_controller.stop();
    emit journalFailed(
        QStringLiteral("Recording"),
        QStringLiteral("The recording was stopped: its clicks could not be written to \"%1\" "
                       "(%2). The disk may be full. What was recorded until now is kept; free "
                       "some space, then save it as a project or record again.")
            .arg(m_files.journalFileSpec(), why));
}

QString TakeKeeper::restore() {
    const KeptTake take = m_files.restore();
    m_logger.reset();
    m_logger.grid().setRows(take.rows);
    m_controller.setRecordingLengthMs(qMax<qint64>(take.voiceMs, 0));
    m_captions.loadCues(take.captions);
    if (take.unreadableRows > 0)
        emit rowsLeftOut(
            QStringLiteral("Restore"),
            QStringLiteral("%1 of the take's clicks could not be read and %2 left "
                           "out (%3); %4 came back.")
                .arg(take.unreadableRows)
                .arg(take.unreadableRows == 1 ? QStringLiteral("was") : QStringLiteral("were"))
                .arg(take.rowsProblem)
                .arg(take.rows.size()));
    if (!take.captionsProblem.isEmpty())
        emit captionsFailed(QStringLiteral("Restore"),
                            QStringLiteral("Not all captions of the recording are back: %1")
                                .arg(take.captionsProblem));
    return take.voiceProblem;
}

void TakeKeeper::markSaved() {
    m_files.markSaved();
}

void TakeKeeper::discard() {
    m_files.discard();
    m_captions.clear();
    m_logger.reset();
    m_controller.setRecordingLengthMs(0);
}

QStringList TakeKeeper::keptFileNames() const {
    return m_files.keptFileNames();
}

} // namespace cq
