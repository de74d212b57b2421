#include "render/Mp4Container.h"

#include "render/FrameRate.h"
#include "render/Mp4Contents.h"

#include <algorithm>

namespace cq {

qint64 Mp4TrackTimescale(const FrameRate& rate) {
    qint64 timescale = rate.num;
    while (timescale < 10000)
        timescale *= 2;
    return timescale;
}

QString Mp4Container::suffix() const {
    return QStringLiteral("mp4");
}

// Every piece is made with the same settings at the same size, rate and clock, and the same
// colour description (a picture's decoder would describe its chroma as centred, a video's as
// unknown), so that their stream headers are identical and the join can copy them all behind
// the first piece's header. The encoder picks its own threads: a still costs four frames
// however it runs, and a video's piece, the longest step of most renders, gets every core.
QStringList Mp4Container::pieceEncoderOptions(const FrameRate& rate) const {
    // Words without blanks: split at the blanks, they are the arguments.
    return QStringLiteral("-an -c:v libx264 -preset veryfast -crf 23 -pix_fmt yuv420p "
                          "-color_range tv -colorspace bt470bg -color_primaries bt470bg "
                          "-color_trc smpte170m -chroma_sample_location left "
                          "-video_track_timescale %1 -f mp4")
        .arg(Mp4TrackTimescale(rate))
        .split(u' ');
}

// The picture is fitted once and its frame repeated, as in AVI, but only four frames are
// encoded: the first, and the last three, moved to the end of the still by shifting every
// packet after the first, in the track's clock. MP4 keeps each frame's own duration, so the
// first frame lasts until the last three. These are real, one frame apart, because ffmpeg 5.1,
// converting a video to a constant rate, repeats its last frame as often as the median of the
// last three gaps: a gap there would shorten a converted result. Moving whole packets keeps the
// encoder's order of decoding and showing intact.
StillHold Mp4Container::stillHold(qint64 frames, const FrameRate& rate) const {
    const qint64 encoded = std::min<qint64>(frames, 4);
    const qint64 ticksPerFrame = rate.den * (Mp4TrackTimescale(rate) / rate.num);
    const qint64 shift = (frames - encoded) * ticksPerFrame;
    return {QStringLiteral("loop=loop=%1:size=1,settb=1/(%2),setpts=N")
                .arg(encoded - 1)
                .arg(rate.ffmpegText()),
            {QStringLiteral("-frames:v"), QString::number(encoded), QStringLiteral("-bsf:v"),
             QStringLiteral("setts=pts=if(eq(N\\,0)\\,PTS\\,PTS+%1):"
                            "dts=if(eq(N\\,0)\\,DTS\\,DTS+%1)")
                 .arg(shift)}};
}

QString Mp4Container::pieceProblem(const QString& file, qint64 frames,
                                   const FrameRate& rate) const {
    const Mp4Contents made = ReadMp4Contents(file);
    if (!made.complete)
        return QStringLiteral("the piece \"%1\" is damaged: %2").arg(file, made.problem);
    const Mp4Track* video = made.track("vide");
    if (!video || made.tracks.size() != 1 || video->samples < 1)
        return QStringLiteral("the piece \"%1\" holds no video track alone").arg(file);
    // frames * den / num seconds, in the track's clock, compared without rounding.
    const bool exact = video->sampleTime == video->mediaDuration &&
                       qint64(video->mediaDuration) * rate.num ==
                           frames * rate.den * qint64(video->mediaTimescale);
    if (!exact)
        return QStringLiteral("the piece \"%1\" lasts %2/%3 s, not its %4 frames")
            .arg(file)
            .arg(video->mediaDuration)
            .arg(video->mediaTimescale)
            .arg(frames);
    return {};
}

QStringList Mp4Container::resultEncoderOptions() const {
    return {"-c:v", "copy", "-c:a", "aac", "-b:a", "128k", "-movflags", "+faststart"};
}

QString Mp4Container::soundSuffix() const {
    return QStringLiteral("m4a");
}

QStringList Mp4Container::soundEncoderOptions() const {
    return {"-c:a", "aac", "-b:a", "128k", "-f", "ipod"};
}

ResultLengths Mp4Container::measureSound(const QString& file) const {
    return ResultLengths::of(ReadMp4Contents(file), "vide", "soun");
}

QStringList Mp4Container::copyResultOptions() const {
    return {"-c:v", "copy", "-c:a", "copy", "-movflags", "+faststart"};
}

ResultLengths Mp4Container::measure(const QString& file) const {
    return ResultLengths::of(ReadMp4Contents(file), "vide", "soun");
}

// Players and phones show an MP4's own text track (mov_text) and offer it by its language.
QStringList Mp4Container::captionTrackOptions() const {
    return {"-c:s", "mov_text", "-metadata:s:s:0", "language=eng"};
}

std::shared_ptr<const RenderContainer> MakeMp4Container() {
    return std::make_shared<Mp4Container>();
}

} // namespace cq
