#include "captions/SpeechDecoder.h"

#include "captions/VoiceSplitting.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <mutex>

namespace cq {

namespace {

// The recogniser counts time in frames of 10 ms.
constexpr qint64 kFrameMs = 10;

QString modelFile(const char* name) {
    return QDir(SpeechDecoder::modelFolder()).filePath(name);
}

// The recogniser's log is one stream for the whole process; naming a log file per decoder would
// close the stream under a decoder working in another thread. It is silenced once, before any
// decoder exists, so that it does not flood the studio's standard error.
void silenceLog() {
    static std::once_flag once;
    std::call_once(once, [] { err_set_logfp(nullptr); });
}

// Loading and freeing a model share state inside the recogniser's libraries: two at once corrupt
// the heap. Decoding, each decoder with its own model, may run side by side.
std::mutex& modelMutex() {
    static std::mutex mutex;
    return mutex;
}

} // namespace

SpeechDecoder::SpeechDecoder() = default;

SpeechDecoder::~SpeechDecoder() {
    const std::lock_guard lock(modelMutex());
    if (m_decoder)
        ps_free(m_decoder);
    if (m_config)
        cmd_ln_free_r(m_config);
}

QString SpeechDecoder::modelFolder() {
    // A model kept elsewhere than where its package installs it (CLIPQUILL_SPEECH_MODEL_DIR is
    // the folder that holds "en-us").
    const QString root = qEnvironmentVariable("CLIPQUILL_SPEECH_MODEL_DIR");
    return QDir(root.isEmpty() ? QStringLiteral(CQ_SPEECH_MODEL_DIR) : root)
        .filePath(QStringLiteral("en-us"));
}

QString SpeechDecoder::missingModelMessage() {
    for (const char* name : {"en-us", "en-us.lm.bin", "cmudict-en-us.dict"})
        if (!QFileInfo::exists(modelFile(name)))
            return QStringLiteral("The English speech model is not installed. Install the Debian "
                                  "package \"pocketsphinx-en-us\".");
    return {};
}

bool SpeechDecoder::open(QString* error) {
    *error = missingModelMessage();
    if (!error->isEmpty())
        return false;
    const QByteArray hmm = QFile::encodeName(modelFile("en-us"));
    const QByteArray lm = QFile::encodeName(modelFile("en-us.lm.bin"));
    const QByteArray dict = QFile::encodeName(modelFile("cmudict-en-us.dict"));
    silenceLog();
    const std::lock_guard lock(modelMutex());
    m_config = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", hmm.constData(), "-lm", lm.constData(),
                           "-dict", dict.constData(), static_cast<const char*>(nullptr));
    if (m_config)
        m_decoder = ps_init(m_config);
    if (!m_decoder)
        *error = QStringLiteral("The speech recogniser could not load its English model.");
    return m_decoder != nullptr;
}

bool SpeechDecoder::startUtterance(QString* error) {
    m_inUtterance = ps_start_utt(m_decoder) >= 0;
    if (!m_inUtterance)
        *error = QStringLiteral("The speech recogniser could not start.");
    return m_inUtterance;
}

void SpeechDecoder::endUtterance(RecognizedWords& words) {
    if (!m_inUtterance)
        return;
    m_inUtterance = false;
    if (ps_end_utt(m_decoder) < 0)
        return;
    int32 score = 0;
    if (!ps_get_hyp(m_decoder, &score))
        return; // nothing was heard
    // Frames count from the start of the stream, the span's first sample.
    const qint64 offsetMs = m_streamStartSample * 1000 / kSpeechSamplesPerSecond;
    for (ps_seg_t* seg = ps_seg_iter(m_decoder); seg; seg = ps_seg_next(seg)) {
        int startFrame = 0;
        int endFrame = 0;
        ps_seg_frames(seg, &startFrame, &endFrame);
        const QString text = SpokenWord(QString::fromUtf8(ps_seg_word(seg)));
        if (!text.isEmpty())
            words << RecognizedWord{offsetMs + startFrame * kFrameMs,
                                    offsetMs + (endFrame + 1) * kFrameMs, text};
    }
}

RecognizedWords SpeechDecoder::decodeSpan(const QString& rawFileSpec, qint64 fromSample,
                                          qint64 toSample, DecodingProgress& progress,
                                          QString* error) {
    RecognizedWords words;
    QFile file(rawFileSpec);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(fromSample * qint64(sizeof(qint16)))) {
        *error = QStringLiteral("The voice could not be read for recognition.");
        return words;
    }
    m_streamStartSample = fromSample;
    if (ps_start_stream(m_decoder) < 0) {
        *error = QStringLiteral("The speech recogniser could not start.");
        return words;
    }
    UtteranceCutter cutter;
    qint64 at = fromSample;
    QList<qint16> chunk(kSpeechChunkSamples);
    while (at < toSample && !progress.cancelRequested.load()) {
        if (!m_inUtterance && !startUtterance(error))
            return words;
        const qint64 want = qMin<qint64>(kSpeechChunkSamples, toSample - at);
        const qint64 got =
            file.read(reinterpret_cast<char*>(chunk.data()), want * qint64(sizeof(qint16))) /
            qint64(sizeof(qint16));
        if (got <= 0)
            break;
        ps_process_raw(m_decoder, chunk.constData(), size_t(got), FALSE, FALSE);
        at += got;
        progress.samplesDone += got;
        if (cutter.endsAfter(ChunkLevel(chunk.constData(), got)))
            endUtterance(words);
    }
    // Finishing the search over what was heard so far can take a while; a cancel skips it, and
    // the decoder is freed mid-utterance.
    if (!progress.cancelRequested.load())
        endUtterance(words);
    return words;
}

} // namespace cq
