#include "render/MediaFileInfo.h"

#include "platform/FfmpegOutput.h"

namespace cq {

MediaFileInfo GetFileInfoVars(const QString& probeText) {
    MediaFileInfo info;
    const QString audio = FfmpegLabelLine(probeText, u"Audio: ");
    if (!audio.isNull()) {
        // "Audio: aac (LC) (mp4a / 0x6134706D), 44100 Hz, ...": the codec is the first word.
        const QStringList fields = FfmpegStreamFields(audio);
        info.hasAudio = !fields.isEmpty() && !fields.first().trimmed().isEmpty();
    }
    return info;
}

} // namespace cq
