#include "captions/VoiceSplitting.h"

#include <QFile>

#include <cmath>

namespace cq {

namespace {

// How far on either side of an even division a cut between spans is looked for.
constexpr qint64 kCutSearchSamples = 4 * kSpeechSamplesPerSecond;

QList<double> levelsOf(const QByteArray& bytes) {
    const auto* samples = reinterpret_cast<const qint16*>(bytes.constData());
    const qsizetype count = bytes.size() / qsizetype(sizeof(qint16));
    QList<double> levels;
    for (qsizetype at = 0; at + kSpeechChunkSamples <= count; at += kSpeechChunkSamples)
        levels << ChunkLevel(samples + at, kSpeechChunkSamples);
    return levels;
}

// The sample in the middle of the quietest chunk near `around`.
qint64 quietCutNear(QFile& file, qint64 around, qint64 samples) {
    const qint64 from = qMax<qint64>(0, around - kCutSearchSamples);
    const qint64 to = qMin(samples, around + kCutSearchSamples);
    if (!file.seek(from * qint64(sizeof(qint16))))
        return around;
    const qsizetype best = QuietestChunk(levelsOf(file.read((to - from) * sizeof(qint16))));
    if (best < 0)
        return around;
    return from + best * kSpeechChunkSamples + kSpeechChunkSamples / 2;
}

} // namespace

double ChunkLevel(const qint16* samples, qsizetype count) {
    if (count <= 0)
        return 0;
    double sum = 0;
    for (qsizetype i = 0; i < count; ++i)
        sum += double(samples[i]) * samples[i];
    return std::sqrt(sum / double(count));
}

bool UtteranceCutter::endsAfter(double level) {
    m_loudest = qMax(m_loudest, level);
    const bool quiet = level <= m_limits.silenceLevel || level < m_loudest * m_limits.quietRatio;
    m_quietRun = quiet ? m_quietRun + 1 : 0;
    ++m_chunks;
    const bool ends = m_chunks >= m_limits.maxChunks ||
                      (m_chunks >= m_limits.minChunks && m_quietRun >= m_limits.pauseChunks);
    if (ends) {
        m_chunks = 0;
        m_quietRun = 0;
    }
    return ends;
}

qsizetype QuietestChunk(const QList<double>& levels) {
    qsizetype best = -1;
    for (qsizetype i = 0; i < levels.size(); ++i)
        if (best < 0 || levels.at(i) < levels.at(best))
            best = i;
    return best;
}

QList<qint64> VoiceSpanBounds(const QString& rawFileSpec, qint64 samples, int parts) {
    QList<qint64> bounds{0};
    QFile file(rawFileSpec);
    const bool readable = file.open(QIODevice::ReadOnly);
    for (int part = 1; part < parts; ++part) {
        const qint64 even = samples * part / parts;
        const qint64 cut = readable ? quietCutNear(file, even, samples) : even;
        if (cut > bounds.last() && cut < samples)
            bounds << cut;
    }
    bounds << samples;
    return bounds;
}

} // namespace cq
