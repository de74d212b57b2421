#include "captions/RecognizeCaptions.h"

#include "captions/CaptionRecognitionJob.h"

namespace cq {

RecognizedCaptions RecognizeCaptions(const QString& voiceWavFileSpec, const ToolLocation& ffmpeg,
                                     const QString& workFolder) {
    CaptionRecognitionJob job(voiceWavFileSpec, ffmpeg, workFolder);
    const JobEnd end = RunToEnd(job, [&] { job.start(); });
    if (end.isCancelled())
        return {{}, QStringLiteral("Recognition was cancelled.")};
    if (end.isFailed())
        return {{}, end.message};
    return {job.cues(), {}};
}

} // namespace cq
