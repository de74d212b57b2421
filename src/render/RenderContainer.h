#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace cq {

struct FrameRate;

// How a still picture is held for its frames in a piece: the filters after the picture is fitted
// into the frame, and the output options that keep its timing and its length.
struct StillHold {
    QString filter;
    QStringList outputOptions;
};

// The lengths of a result as read from the file itself; -1 where a stream is missing.
struct ResultLengths {
    bool complete = false;
    QString problem; // why the file cannot be measured; empty when it is complete
    qint64 videoMs = -1;
    qint64 audioMs = -1;

    // From a container's reading of its file: whether it is whole, why not, and the length of
    // a stream of a kind (the container's own name for video and for sound).
    template <typename Contents>
    static ResultLengths of(const Contents& read, const char* videoKind, const char* soundKind) {
        ResultLengths lengths;
        lengths.complete = read.complete;
        lengths.problem = read.problem;
        if (read.complete) {
            lengths.videoMs = read.durationMs(videoKind);
            lengths.audioMs = read.durationMs(soundKind);
        }
        return lengths;
    }
};

// What depends on the container of the result. The pieces are made in the result's own codec
// and container, so the join only copies them: how a still is held, how a piece is checked and
// read back for the join, and how the finished result is measured all follow from it.
class RenderContainer {
public:
    virtual ~RenderContainer() = default;

    // The file name suffix of pieces and results, without the dot.
    virtual QString suffix() const = 0;
    // The encoder and muxer options of a piece, from "-an" to its format.
    virtual QStringList pieceEncoderOptions(const FrameRate& rate) const = 0;
    virtual StillHold stillHold(qint64 frames, const FrameRate& rate) const = 0;
    // Why a piece file is not a whole piece of exactly this many frames at the rate; empty when
    // it is. Reads the file: for a worker thread or a short file.
    virtual QString pieceProblem(const QString& file, qint64 frames,
                                 const FrameRate& rate) const = 0;
    // The result's streams: the joined video copied, the sound encoded.
    virtual QStringList resultEncoderOptions() const = 0;
    // The voice alone in the result's sound codec, encoded before the join: its file suffix,
    // and its encoder and muxer options, from "-c:a" to its format.
    virtual QString soundSuffix() const = 0;
    virtual QStringList soundEncoderOptions() const = 0;
    // Reads such a sound file: whether it is whole, and its length in audioMs.
    virtual ResultLengths measureSound(const QString& file) const = 0;
    // The result's streams when the sound, too, is ready in the result's codec: both copied.
    virtual QStringList copyResultOptions() const = 0;
    // Reads the whole result; blocking, so it runs on a worker thread.
    virtual ResultLengths measure(const QString& file) const = 0;
    // The options that encode the cues, read from an SRT input, as the result's subtitle track;
    // empty for a container that carries none (the files beside the result then carry them).
    virtual QStringList captionTrackOptions() const { return {}; }
};

} // namespace cq
