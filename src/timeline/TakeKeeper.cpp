#include "timeline/TakeKeeper.h"

#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/RecordingController.h"
#include "timeline/RecordingState.h"

#include <QFileInfo>

namespace cq {

TakeKeeper::TakeKeeper(Parts parts, const QString& workFolder, QObject* parent)
    : QObject(parent), m_parts(parts), m_files(workFolder, parts.controller.voiceFileSpec()),
      m_journal(new TakeJournal(this)) {
    connect(&m_parts.controller, &RecordingController::recordingChanged, this,
            &TakeKeeper::onRecordingChanged);
    connect(&m_parts.logger, &EventLogger::eventLogged, this, &TakeKeeper::onRowLogged);
    connect(&m_parts.grid, &EventGridModel::dataChanged, this, &TakeKeeper::onRowsCorrected);
    connect(&m_parts.grid, &EventGridModel::rowsRemoved, this, &TakeKeeper::onRowsCorrected);
    connect(m_journal, &TakeJournal::writeFailed, this, &TakeKeeper::stopOnJournalFailure);
}

void TakeKeeper::onRecordingChanged(bool recording) {
    if (!recording) {
        m_journal->finish();
        // A take without a voice or a click holds nothing to keep.
        if (m_parts.grid.rowCount() == 0 && !QFileInfo(m_files.voiceFileSpec()).isFile())
            m_files.markSaved();
        return;
    }
    if (!m_journal->start(m_files.journalFileSpec()))
        stopOnJournalFailure(m_journal->errorString());
}

void TakeKeeper::onRowLogged(int row) {
    m_journal->append(m_parts.grid.row(row));
}

void TakeKeeper::onRowsCorrected() {
    if (!m_parts.state.gblnRecording && isUnsaved())
        m_journal->rewrite(m_files.journalFileSpec(), m_parts.grid.rows());
}

void TakeKeeper::stopOnJournalFailure(const QString& why) {
    if (m_parts.state.gblnRecording)
        m_parts.controller.cmdPause_Click();
    emit journalFailed(
        QStringLiteral("Recording"),
        QStringLiteral("The recording was stopped: its clicks could not be written to \"%1\" "
                       "(%2). The disk may be full. What was recorded until now is kept; free "
                       "some space, then save it as a project or record again.")
            .arg(m_files.journalFileSpec(), why));
}

QString TakeKeeper::restore() {
    const KeptTake take = m_files.restore();
    m_parts.logger.reset();
    m_parts.grid.setRows(take.rows);
    m_parts.state.recordingLengthMs = qMax<qint64>(take.voiceMs, 0);
    return take.voiceProblem;
}

void TakeKeeper::markSaved() {
    m_files.markSaved();
}

void TakeKeeper::discard() {
    m_files.discard();
    m_parts.logger.reset();
    m_parts.state.recordingLengthMs = 0;
}

QStringList TakeKeeper::keptFileNames() const {
    return m_files.keptFileNames();
}

} // namespace cq
