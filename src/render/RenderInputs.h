#pragma once

#include "captions/CaptionCue.h"
#include "platform/ToolLocator.h"
#include "render/AviContainer.h"
#include "render/FrameRate.h"
#include "render/VoiceOptions.h"
#include "studio/TimelineEvent.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>

namespace cq {

// Everything a render reads, handed over whole by whoever starts it; a render never changes it.
struct RenderInputs {
    QList<TimelineEvent> rows;
    qint64 recordingMs = 0; // the voice's length
    QString voiceFile;      // RecordedAudio.wav
    VoiceOptions voice;     // what the mix does to it
    QString workFolder;     // where the render takes a work space of its own
    QString blackPicture;   // the lead-in, and the stand-in of any item that fails
    ToolLocation ffmpeg;    // not found(): the render says what to install
    QString ffprobe;        // empty: ffmpeg's own description measures a sound-only result
    QSize frameSize{320, 240};
    FrameRate frameRate;
    QString output; // FinalMix.avi or .mp4, or FinalMix.mp3 for a recording without events
    bool keepVideoSound = false;
    // Files the render was made from without reading them itself (the timeline, its captions): the
    // result never lands on one of them.
    QStringList sourceFiles;
    // Where the studio remembers the subtitle files it wrote beside results; empty: nowhere, so a
    // render replaces or removes none that stand there.
    QString writtenFilesRecord;
    // The message's captions. With writeCaptions, X.srt and X.vtt are written beside the output X;
    // with burnCaptions, the pieces under a cue show it in the picture.
    CaptionCues captions;
    bool writeCaptions = false;
    bool burnCaptions = false;
    // What was changed in the captions to make them fit (a cue shortened), told with the result.
    QStringList captionNotes;
    std::shared_ptr<const RenderContainer> container = MakeAviContainer();
};

// Inputs as the studio hands them over, or why they cannot be rendered at all.
struct RenderRequest {
    RenderInputs inputs;
    QString problem;

    bool ok() const { return problem.isEmpty(); }
};

// Where one run of a render works, once it has taken its work space.
struct RenderSpace {
    QString folder;        // pieces, their keys, the join list
    QString partialOutput; // the result is written here, renamed to the output once it passed
};

} // namespace cq
