#pragma once

#include "captions/CaptionCue.h"
#include "studio/TimelineEvent.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

// A project keeps a recording across restarts (the work folder is emptied at every exit): a
// folder holding RecordedAudio.wav, copies of the text pictures, Timeline.txt with the event
// rows and, when the message has captions, Captions.srt with them.
struct ProjectResult {
    QString error;            // empty when the project was saved / opened
    QStringList missingFiles; // media the rows name that are not there
    QList<TimelineEvent> rows; // opened: the rows, text pictures pointing into the work folder
    qint64 voiceMs = -1;      // opened: the recorded voice's length
    CaptionCues captions;     // opened: the project's captions, none when it has no file
    QString captionsProblem;  // opened: why some or all of the captions could not be read
    QString notice;           // saved: what the user should know besides (a folder kept)
    bool ok() const { return error.isEmpty(); }
};

inline constexpr char kProjectVoiceFileName[] = "RecordedAudio.wav";
inline constexpr char kProjectTimelineFileName[] = "Timeline.txt";

// Whether the folder looks like a saved project (it holds a Timeline.txt).
bool IsProjectFolder(const QString& folder);

// Copies the voice and the pictures of text events that live in the work folder into the
// project folder (made when missing) and writes Timeline.txt and the captions (no captions
// remove an older project's file). The folder is replaced whole: a save that fails or is
// interrupted leaves the project as it was before or as it is after, never a mix.
ProjectResult SaveProject(const QString& projectFolder, const QList<TimelineEvent>& rows,
                          const QString& voiceFileSpec, const QString& workFolder,
                          const CaptionCues& captions = {});

// Reads Timeline.txt (a bad line rejects the project, naming the line), copies the voice to
// voiceFileSpec and the project's text pictures into the work folder, and reads the captions.
// The folder an interrupted save left beside a project is refused, naming the project.
ProjectResult OpenProject(const QString& projectFolder, const QString& voiceFileSpec,
                          const QString& workFolder);

} // namespace cq
