#pragma once

#include "captions/CaptionCue.h"
#include "studio/TimelineEvent.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

inline constexpr char kTakeJournalFileName[] = "RecordedEvents.txt";

// What a take left in the work folder, read back for the grid and the replay.
struct KeptTake {
    QList<TimelineEvent> rows;
    int unreadableRows = 0; // journal lines that could not be read and were left out
    QString rowsProblem;    // the first of them, "line 3: ..."
    qint64 voiceMs = -1;    // -1 when there is no usable voice
    QString voiceProblem;   // why the voice could not be had back; empty when it could
    CaptionCues captions;
    QString captionsProblem; // why some or all of the captions could not be had back
};

// The files of the take in the work folder: the voice, the journal of its clicks, the
// pictures of its text events and its captions. While the journal is there the take was never saved
// as a project nor discarded, so it is kept for the user to have back.
class TakeFiles {
public:
    TakeFiles(QString workFolder, QString voiceFileSpec);

    QString journalFileSpec() const;
    QString voiceFileSpec() const { return m_voiceFileSpec; }
    QString captionsFileSpec() const;
    bool isUnsaved() const;

    // Repairs the voice's header and reads the journal.
    KeptTake restore() const;
    // The take is kept elsewhere now (a project): the mark goes, the files stay for replay.
    void markSaved() const;
    // Removes the journal, the voice, the captions and the text pictures the journal names in the
    // work folder.
    void discard() const;
    // The names of the files in the work folder that an unsaved take needs; none once saved.
    QStringList keptFileNames() const;

private:
    // The journal's readable rows.
    QList<TimelineEvent> journalRows() const;

    QString m_workFolder;
    QString m_voiceFileSpec;
};

} // namespace cq
