#include "app/StudioCaptions.h"

#include "captions/CueSplitting.h"
#include "captions/TextRowCues.h"
#include "studio/StudioSettings.h"

namespace cq {

void AddCaptions(RenderInputs& inputs, const StudioSettings& studio, const CaptionCues& ownCues) {
    inputs.writeCaptions = studio.captions;
    inputs.burnCaptions = studio.burnCaptions;
    if (!studio.captions && !studio.burnCaptions) {
        inputs.captions.clear();
        return;
    }
    inputs.captions =
        !ownCues.isEmpty() ? ownCues : CuesFromTextRows(inputs.rows, inputs.recordingMs);
    inputs.captionNotes = ShortenLongCues(inputs.captions);
}

CaptionCues VoiceAndTextCues(const CaptionCues& voice, const QList<TimelineEvent>& rows,
                             qint64 recordingMs) {
    CaptionCues cues = voice + CuesFromTextRows(rows, recordingMs);
    SortCuesByStart(cues);
    return cues;
}

} // namespace cq
