#include "render/AviContainer.h"

#include "render/AviContents.h"
#include "render/FrameRate.h"
#include "render/MpegAudioFrames.h"

namespace cq {

QString AviContainer::suffix() const {
    return QStringLiteral("avi");
}

// Long groups of pictures, because most pieces are one still picture, and every piece starts on
// a key frame. One thread each: the pieces run on every core at once.
QStringList AviContainer::pieceEncoderOptions(const FrameRate&) const {
    return {"-an", "-c:v", "mpeg4", "-q:v", "4", "-g", "300", "-threads", "1", "-f", "avi"};
}

// The picture is decoded and fitted once, then its one frame repeated: looping the input would
// decode a large picture for every frame. The loop ends by itself; ffmpeg 5.1 can spin for ever
// when several endless loops share a run.
// Only the still's first frame and its last three are encoded; the frames between are empty
// chunks, so the encoder spends nothing on frames that cannot differ. The last three are real
// because ffmpeg 5.1, converting a video to a constant rate, repeats its last frame as often as
// the median of the last three gaps: a gap there would lengthen the converted video.
// Passthrough keeps the gaps as gaps, each counted in the output's own time base, so no frame's
// time is rounded away; the muxer fills each gap with an empty chunk.
StillHold AviContainer::stillHold(qint64 frames, const FrameRate& rate) const {
    return {QStringLiteral("loop=loop=%1:size=1,settb=1/(%2),setpts=N,select=lt(n\\,1)+gt(n\\,%3)")
                .arg(frames - 1)
                .arg(rate.ffmpegText())
                .arg(frames - 4),
            {QStringLiteral("-frames:v"), QString::number(frames), QStringLiteral("-fps_mode"),
             QStringLiteral("passthrough")}};
}

QString AviContainer::pieceProblem(const QString& file, qint64 frames, const FrameRate&) const {
    const AviContents made = ReadAviContents(file);
    if (!made.complete)
        return QStringLiteral("the piece \"%1\" is damaged: %2").arg(file, made.problem);
    if (made.videoFrames != frames)
        return QStringLiteral("the piece \"%1\" has %2 of its %3 frames")
            .arg(file)
            .arg(made.videoFrames)
            .arg(frames);
    return {};
}

// MP3 in AVI would make the muxer shift every video frame after the first (the encoder's
// priming), so the sound is MPEG audio layer 2.
QStringList AviContainer::resultEncoderOptions() const {
    return {"-c:v", "copy", "-c:a", "mp2", "-b:a", "128k"};
}

QString AviContainer::soundSuffix() const {
    return QStringLiteral("mp2");
}

QStringList AviContainer::soundEncoderOptions() const {
    return {"-c:a", "mp2", "-b:a", "128k", "-f", "mp2"};
}

ResultLengths AviContainer::measureSound(const QString& file) const {
    const MpegAudioFrames read = ReadMpegAudioFrames(file);
    ResultLengths lengths;
    lengths.complete = read.complete;
    lengths.problem = read.problem;
    lengths.audioMs = read.durationMs;
    return lengths;
}

QStringList AviContainer::copyResultOptions() const {
    return {"-c:v", "copy", "-c:a", "copy"};
}

ResultLengths AviContainer::measure(const QString& file) const {
    return ResultLengths::of(ReadAviContents(file), "vids", "auds");
}

std::shared_ptr<const RenderContainer> MakeAviContainer() {
    return std::make_shared<AviContainer>();
}

} // namespace cq
