#include "render/MediaFileInfo.h"

#include "platform/FfmpegOutput.h"

namespace cq {

MediaFileInfo GetFileInfoVars(const QString& probeText, const QString& fileName) {
    QString text = probeText;
    // Where ffmpeg repeats it: "Input #0, avi, from 'NAME':".
    if (!fileName.isEmpty())
        text.replace(QStringLiteral("from '%1':").arg(fileName), QStringLiteral("from '':"));
    MediaFileInfo info;
    for (const FfmpegStream& stream : FfmpegInputStreams(text)) {
        // "aac (LC) (mp4a / 0x6134706D), 44100 Hz, ...": the codec is the first word.
        const QStringList fields = FfmpegStreamFields(stream.description);
        if (stream.kind == u"Audio" && !fields.isEmpty() && !fields.first().isEmpty())
            info.hasAudio = true;
    }
    info.durationMs = FfmpegDurationMs(text);
    return info;
}

} // namespace cq
