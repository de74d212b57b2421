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
    QString workFolder;     // the render's own work space: pieces, keys, the join list
    QString blackPicture;   // SystemMedia/Black.jpg: the lead-in, and any item that fails
    QString ffmpeg;
    QString gstrVideoRes = QStringLiteral("320X240");
    QString gstrFrameRate = QStringLiteral("29.97");
    QString output;        // FinalMix.avi, or FinalMix.mp3 for a recording without events
    QString partialOutput; // written first, renamed to output once it passed its check
    bool keepVideoSound = false;
    // Videos whose own sound is mixed under the voice; found by the render job's probe.
    QSet<QString> videosWithSound;
};

// One stretch of the result: one item, from its logged time until the next item's.
struct RenderSegment {
    int number = 0; // 1, 2, ... in time order
    QString kind;   // "Black", "Pictures", "Text", "Both", "Video"
    QString source; // the file shown
    qint64 startMs = 0;
    qint64 lengthMs = 0;
    qint64 firstFrame = 0; // frame of the result where the item appears
    qint64 frames = 0;
    qint64 begVideoAtMs = -1; // a video's start position
    int eventCount = 0;       // the row's media count; 0 for the lead-in
    QString recipe;           // every setting the piece is made with; its name is derived from it
    QString piece;            // the finished piece, in the output's codec, size and rate
    QString partial;          // what ffmpeg writes; renamed to piece once it passed its check
    QString line;             // the ffmpeg line that makes the partial piece
    QString blackLine;        // the same length of black, for an item that cannot be rendered
};

struct RenderPlan {
    QString error; // why nothing can be rendered; empty when the plan is good
    bool audioOnly = false;
    QList<RenderSegment> segments;
    QString joinList;     // ffconcat text naming every piece in order
    QString joinListFile; // where it is written
    QString finalLine;    // the pieces joined by stream copy, mixed with the voice
    QString output;
    QString partialOutput;
    qint64 targetMs = 0;
    qint64 totalFrames = 0;

    bool ok() const { return error.isEmpty(); }
    // The pieces the result needs, each once, in order of first use.
    QStringList distinctPieces() const;
};

// The kinds of rows that put something on screen.
bool IsVisualMediaType(const QString& mediaType);

RenderPlan BuildRenderPlan(const RenderInputs& in);

// The ffmpeg line that makes one piece, and one line that makes several pieces in one ffmpeg
// run (each piece still its own file), which saves the tool's start-up for every piece but the
// first. Only still pictures may share a run. Each writes the segment's partial file.
QString SegmentLine(const RenderInputs& in, const RenderSegment& segment);
QString BatchLine(const RenderInputs& in, const QList<RenderSegment>& segments);

// The name a result is written under before it is complete: "FinalMix.rendering-TAG.avi" beside
// the output, so that the rename into place never crosses a file system and two renders never
// write the same file.
QString PartialOutputOf(const QString& output, const QString& tag);

} // namespace cq
