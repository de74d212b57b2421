#pragma once

#include "studio/EventRow.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace cq {

// Everything a render reads: the event rows, the recording, the output settings.
struct RenderInputs {
    QList<EventRow> rows;
    qint64 recordingMs = 0; // the voice's length
    QString voiceFile;      // RecordedAudio.wav
    QString workFolder;     // where the pieces and joins go
    QString blackPicture;   // SystemMedia/Black.jpg: the lead-in, and any item that fails
    QString ffmpeg;
    QString gstrVideoRes = QStringLiteral("320X240");
    QString gstrFrameRate = QStringLiteral("29.97");
    QString output; // FinalMix.avi, or FinalMix.mp3 for a recording without events
    // Videos whose own sound is mixed under the voice; empty means every video is silent.
    QSet<QString> videosWithSound;
};

// One stretch of the result: one item, from its logged time until the next item's.
struct RenderSegment {
    int number = 0; // 1, 2, ... in time order; the piece is number.mpg
    QString kind;   // "Black", "Pictures", "Text", "Both", "Video"
    QString source; // the file shown
    qint64 startMs = 0;
    qint64 lengthMs = 0;
    qint64 firstFrame = 0; // frame of the result where the item appears
    qint64 frames = 0;
    qint64 begVideoAtMs = -1; // a video's start position
    int eventCount = 0;       // the row's media count; 0 for the lead-in
    QString piece;
    QString line;      // the ffmpeg line that makes the piece
    QString blackLine; // the same length of black, for an item that cannot be rendered
};

struct RenderPlan {
    QString error; // why nothing can be rendered; empty when the plan is good
    bool audioOnly = false;
    QList<RenderSegment> segments;
    QStringList joinLines; // byte-wise joins, five pieces at a time
    QString joinedFile;    // FinalVideo.mpg
    QString finalLine;     // conversion to the output rate and size, mixed with the voice
    QString output;
    QString partialOutput; // written first, renamed to output when it is complete
    qint64 targetMs = 0;
    qint64 totalFrames = 0;

    bool ok() const { return error.isEmpty(); }
};

// The kinds of rows that put something on screen.
bool IsVisualMediaType(const QString& mediaType);

RenderPlan BuildRenderPlan(const RenderInputs& in);

// Lines of the join: "cat" of up to five pieces (after the first group, the previous join and
// five more) into tempN.mpg, and the rest into the joined file.
QStringList JoinLines(const QStringList& pieces, const QString& workFolder,
                      const QString& joinedFile);

// The ffmpeg line that makes one piece straight at the output size, and one line that makes
// several pieces in one ffmpeg run (each piece still its own file), which saves the tool's
// start-up for every piece but the first. Only still pictures may share a run.
QString SegmentLine(const RenderInputs& in, const RenderSegment& segment);
QString BatchLine(const RenderInputs& in, const QList<RenderSegment>& segments);

// The file name written while a result is under way: "FinalMix.rendering.avi".
QString PartialOutputOf(const QString& output);

} // namespace cq
