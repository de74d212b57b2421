#pragma once

#include "take/TakeFiles.h"
#include "take/TakeJournal.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

class CaptionTableModel;
class EventGridModel;
class EventLogger;
class RecordingController;

// Keeps the take that was recorded until it is saved as a project or discarded: the clicks go
// to the journal as they are logged, the captions to their file whenever they change, a take
// left by a studio that ended without saving is offered back, and only a saved or discarded take
// leaves the work folder. Captions changed after the take was saved make it unsaved again.
class TakeKeeper : public QObject {
    Q_OBJECT
public:
    // The take is the one the controller records, logged by the logger into the grid, with the
    // captions of the editor.
    TakeKeeper(RecordingController& controller, EventLogger& logger, CaptionTableModel& captions,
               const QString& workFolder, QObject* parent = nullptr);

    // A take was recorded (or restored) and is neither saved nor discarded.
    bool isUnsaved() const { return m_files.isUnsaved(); }
    // Puts the voice, the grid and the captions back as the take left them; returns what of the
    // voice could not be had back (empty when all was). Captions that could not be read are
    // reported by captionsFailed, clicks that could not be read by rowsLeftOut.
    QString restore();
    void markSaved();
    void discard();
    // The work folder's files that must outlive the studio (the unsaved take's).
    QStringList keptFileNames() const;

signals:
    // The journal could not be written: the take was stopped, or the grid's corrections are not
    // in it.
    void journalFailed(const QString& title, const QString& text);
    // The captions could not be written to the work folder, or not all read back from it.
    void captionsFailed(const QString& title, const QString& text);
    // Some clicks of a restored take could not be read from the journal; the rest are back.
    void rowsLeftOut(const QString& title, const QString& text);

private:
    void onRecordingChanged(bool recording);
    void onRowLogged(int row);
    void onRowsCorrected();
    // Writes the grid's rows to the journal; lost says what a failure would cost, for the user.
    void rewriteJournal(const QString& lost);
    void onCaptionsChanged();
    void stopOnJournalFailure(const QString& why);

    RecordingController& m_controller;
    EventLogger& m_logger;
    CaptionTableModel& m_captions;
    TakeFiles m_files;
    TakeJournal* m_journal;
};

} // namespace cq
