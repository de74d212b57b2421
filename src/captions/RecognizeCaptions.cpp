#include "captions/RecognizeCaptions.h"

#include "captions/CaptionRecognitionJob.h"

#include <QEventLoop>

namespace cq {

RecognizedCaptions RecognizeCaptions(const QString& voiceWavFileSpec, const ToolLocation& ffmpeg,
                                     const QString& workFolder) {
    RecognizedCaptions result;
    CaptionRecognitionJob job(voiceWavFileSpec, ffmpeg, workFolder);
    QEventLoop loop;
    QObject::connect(&job, &CaptionRecognitionJob::finished, &loop, [&](const CaptionCues& cues) {
        result.cues = cues;
        loop.quit();
    });
    QObject::connect(&job, &CaptionRecognitionJob::failed, &loop, [&](const QString& message) {
        result.problem = message;
        loop.quit();
    });
    QObject::connect(&job, &CaptionRecognitionJob::cancelled, &loop, [&] {
        result.problem = QStringLiteral("Recognition was cancelled.");
        loop.quit();
    });
    job.start();
    if (job.isRunning())
        loop.exec();
    return result;
}

} // namespace cq
