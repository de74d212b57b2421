#pragma once

#include "studio/EventRow.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

// A project keeps a recording across restarts (the work folder is emptied at every exit): a
// folder holding RecordedAudio.wav, copies of the text pictures, and Timeline.txt with the
// event rows.
struct ProjectResult {
    QString error;            // empty when the project was saved / opened
    QStringList missingFiles; // media the rows name that are not there
    QList<EventRow> rows;     // opened: the rows, text pictures pointing into the work folder
    qint64 voiceMs = -1;      // opened: the recorded voice's length
    bool ok() const { return error.isEmpty(); }
};

inline constexpr char kProjectVoiceFileName[] = "RecordedAudio.wav";
inline constexpr char kProjectTimelineFileName[] = "Timeline.txt";

// Whether the folder looks like a saved project (it holds a Timeline.txt).
bool IsProjectFolder(const QString& folder);

// Copies the voice and the pictures of text events that live in the work folder into the
// project folder (made when missing) and writes Timeline.txt.
ProjectResult SaveProject(const QString& projectFolder, const QList<EventRow>& rows,
                          const QString& voiceFileSpec, const QString& workFolder);

// Reads Timeline.txt (a bad line rejects the project, naming the line), copies the voice to
// voiceFileSpec and the project's text pictures into the work folder.
ProjectResult OpenProject(const QString& projectFolder, const QString& voiceFileSpec,
                          const QString& workFolder);

} // namespace cq
