#pragma once

#include "platform/ToolCommand.h"
#include "render/BurnedCaptions.h"
#include "render/PieceRecipe.h"
#include "render/RenderInputs.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace cq {

// One stretch of the result: one item, from its logged time until the next item's.
struct RenderSegment {
    int number = 0; // 1, 2, ... in time order
    SegmentKind kind = SegmentKind::Still;
    QString source; // the file shown
    qint64 startMs = 0;
    qint64 lengthMs = 0;
    qint64 firstFrame = 0;    // frame of the result where the item appears
    qint64 frames = 0;        //
    qint64 sourceStartMs = 0; // where a video is cut from
    PieceRecipe recipe;       // everything the piece is made from; its name comes from it
    QString piece;            // the finished piece, in the result's codec, size and rate
    QString partial;          // what ffmpeg writes; renamed to piece once it passed its check
    QString sourceProblem;    // why the source cannot be handed to a tool; empty when it can
    PieceCues captions;       // drawn into the piece; empty unless captions are burned in
    QString captionsScript;   // the script the piece's captions are drawn from, in the work space
};

struct RenderPlan {
    QString error; // why nothing can be rendered; empty when the plan is good
    bool audioOnly = false;
    QList<RenderSegment> segments;
    QString joinList;     // ffconcat text naming every piece in order
    QString joinListFile; // where it is written
    ToolCommand finalCommand; // the pieces joined by stream copy, mixed with the voice as recorded
    // SRT for the result's own subtitle track, empty for none, and where it is written for the
    // final line to read.
    QByteArray captionTrack;
    QString captionTrackFile;
    QString partialOutput;
    qint64 targetMs = 0;
    qint64 totalFrames = 0;

    bool ok() const { return error.isEmpty(); }
    // The pieces the result needs, each once, in order of first use.
    QStringList distinctPieces() const;
};

// videosWithSound: the videos whose own sound is mixed under the voice. videoLengths: how long
// the videos last, where known; a row that starts a video at or after its end shows black and
// says so.
RenderPlan BuildRenderPlan(const RenderInputs& in, const RenderSpace& space,
                           const QSet<QString>& videosWithSound,
                           const QHash<QString, qint64>& videoLengths = {});

// The command that joins the pieces (if any) and mixes in the voice, its sound through
// voiceFilter first (empty: as recorded). Known only once the voice is measured, after the plan.
ToolCommand FinalMixCommand(const RenderInputs& in, const RenderPlan& plan,
                            const QSet<QString>& videosWithSound, const QString& voiceFilter);

// The command that joins the pieces and the voice's sound, made beforehand in the result's
// codec, both by stream copy.
ToolCommand CopyJoinCommand(const RenderInputs& in, const RenderPlan& plan,
                            const QString& voiceSound);

// Whether the result's sound mixes the sound of a video under the voice: then the join encodes
// it, and the voice alone cannot be made beforehand.
bool MixesVideoSound(const RenderPlan& plan, const QSet<QString>& videosWithSound);

// Why a file cannot be handed to a tool: a FIFO would stall it, a device might never end, a
// folder is no media. Empty for a regular file (after following links) or a missing one, which
// the tool itself reports.
QString SourceProblem(const QString& file);

// The name a result is written under before it is complete: "FinalMix.rendering-TAG.avi" beside
// the output, so that the rename into place never crosses a file system and two renders never
// write the same file.
QString PartialOutputOf(const QString& output, const QString& tag);

} // namespace cq
