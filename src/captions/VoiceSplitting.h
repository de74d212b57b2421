#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

namespace cq {

// Recognition reads the voice as raw 16-bit mono samples at 16 kHz, in chunks of 100 ms.
constexpr int kSpeechSamplesPerSecond = 16000;
constexpr int kSpeechChunkSamples = kSpeechSamplesPerSecond / 10;

// The loudness of a run of samples: its root mean square, 0 to 32768.
double ChunkLevel(const qint16* samples, qsizetype count);

// Decides where a long voice is cut into utterances, so that the recogniser's memory and time
// stay bounded however long the voice is: after a pause of a few chunks once an utterance has
// run for a while, and in any case when it has run for its longest. A chunk counts as quiet
// when it is far below the loudest chunk heard so far (or near digital silence).
class UtteranceCutter {
public:
    struct Limits {
        int minChunks = 30;  // an utterance runs at least this long before a pause ends it
        int pauseChunks = 3; // quiet chunks in a row that make a pause
        int maxChunks = 150; // no utterance runs longer
        double quietRatio = 0.06;
        double silenceLevel = 40.0;
    };
    UtteranceCutter() = default;
    explicit UtteranceCutter(const Limits& limits) : m_limits(limits) {}

    // Takes the next chunk's level; true when the utterance should end after this chunk.
    bool endsAfter(double level);

private:
    Limits m_limits;
    double m_loudest = 0;
    int m_chunks = 0;
    int m_quietRun = 0;
};

// The quietest chunk of the levels, the first of equals; -1 when there are none.
qsizetype QuietestChunk(const QList<double>& levels);

// Where a raw voice file of `samples` samples is cut into `parts` spans that can be recognised
// apart: `parts` + 1 sample positions from 0 to `samples`, each inner cut in the quietest chunk
// within a few seconds of an even division, so that no word is cut in two where it can be
// helped.
QList<qint64> VoiceSpanBounds(const QString& rawFileSpec, qint64 samples, int parts);

} // namespace cq
