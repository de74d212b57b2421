#include "render/MpegAudioFrames.h"

#include <QFile>

#include <array>
#include <cmath>

namespace cq {

namespace {

// Layer II, kilobits a second by bitrate index: MPEG-1, and MPEG-2's lower sample rates.
constexpr std::array<int, 15> kMpeg1Kbps{0,   32,  48,  56,  64,  80,  96, 112,
                                         128, 160, 192, 224, 256, 320, 384};
constexpr std::array<int, 15> kMpeg2Kbps{0,  8,  16, 24,  32,  40,  48, 56,
                                         64, 80, 96, 112, 128, 144, 160};
constexpr std::array<int, 3> kMpeg1Hz{44100, 48000, 32000};
constexpr int kSamplesPerFrame = 1152;

struct FrameHeader {
    int bytes = 0; // the whole frame; 0 when the four bytes are no layer II header
    int sampleRate = 0;
};

FrameHeader parseHeader(const unsigned char* h) {
    if (h[0] != 0xFF || (h[1] & 0xE0) != 0xE0)
        return {};
    const int version = (h[1] >> 3) & 3; // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5, 1: reserved
    const int layer = (h[1] >> 1) & 3;   // 2: layer II
    const int bitrateIndex = h[2] >> 4;
    const int rateIndex = (h[2] >> 2) & 3;
    if (version == 1 || layer != 2 || bitrateIndex == 0 || bitrateIndex == 15 || rateIndex == 3)
        return {};
    const bool mpeg1 = version == 3;
    const int kbps = (mpeg1 ? kMpeg1Kbps : kMpeg2Kbps)[bitrateIndex];
    const int hz = kMpeg1Hz[rateIndex] >> (mpeg1 ? 0 : version == 2 ? 1 : 2);
    const int padding = (h[2] >> 1) & 1;
    return {144 * kbps * 1000 / hz + padding, hz};
}

MpegAudioFrames failed(MpegAudioFrames read, const QString& problem) {
    read.complete = false;
    read.problem = problem;
    return read;
}

} // namespace

MpegAudioFrames ReadMpegAudioFrames(const QString& fileSpec) {
    MpegAudioFrames read;
    QFile file(fileSpec);
    if (!file.open(QIODevice::ReadOnly))
        return failed(read, file.errorString());
    const qint64 size = file.size();
    double seconds = 0;
    qint64 at = 0;
    while (at < size) {
        unsigned char head[4];
        if (!file.seek(at) || file.read(reinterpret_cast<char*>(head), 4) != 4)
            return failed(read, QStringLiteral("it ends inside the header at byte %1").arg(at));
        const FrameHeader frame = parseHeader(head);
        if (frame.bytes == 0)
            return failed(read, QStringLiteral("byte %1 starts no sound frame").arg(at));
        if (at + frame.bytes > size)
            return failed(read, QStringLiteral("its frame at byte %1 is cut short").arg(at));
        at += frame.bytes;
        seconds += double(kSamplesPerFrame) / frame.sampleRate;
        ++read.frames;
    }
    if (read.frames == 0)
        return failed(read, QStringLiteral("it holds no sound"));
    read.complete = true;
    read.durationMs = std::llround(seconds * 1000);
    return read;
}

} // namespace cq
