#pragma once

#include "take/TakeFiles.h"
#include "take/TakeJournal.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

class EventGridModel;
class EventLogger;
class RecordingController;
struct RecordingState;

// Keeps the take that was recorded until it is saved as a project or discarded: the clicks go
// to the journal as they are logged, a take left by a studio that ended without saving is
// offered back, and only a saved or discarded take leaves the work folder.
class TakeKeeper : public QObject {
    Q_OBJECT
public:
    // The take is the one the controller records, logged by the logger into the grid.
    TakeKeeper(RecordingController& controller, EventLogger& logger, const QString& workFolder,
               QObject* parent = nullptr);

    // A take was recorded (or restored) and is neither saved nor discarded.
    bool isUnsaved() const { return m_files.isUnsaved(); }
    // Puts the voice and the grid back as the take left them; returns what could not be had
    // back (empty when all was).
    QString restore();
    void markSaved();
    void discard();
    // The work folder's files that must outlive the studio (the unsaved take's).
    QStringList keptFileNames() const;

signals:
    // The journal could not be written: the take was stopped.
    void journalFailed(const QString& title, const QString& text);

private:
    void onRecordingChanged(bool recording);
    void onRowLogged(int row);
    void onRowsCorrected();
    void stopOnJournalFailure(const QString& why);

    RecordingController& m_controller;
    EventLogger& m_logger;
    TakeFiles m_files;
    TakeJournal* m_journal;
};

} // namespace cq
