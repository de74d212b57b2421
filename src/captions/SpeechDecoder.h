#pragma once

#include "captions/CueSplitting.h"

#include <QString>
#include <QtGlobal>

#include <atomic>

struct cmd_ln_s;
struct ps_decoder_s;

namespace cq {

// How far a recognition has come, shared between the threads that decode and the job that
// reports: samples done, and a request to stop.
struct DecodingProgress {
    std::atomic<qint64> samplesDone{0};
    std::atomic<bool> cancelRequested{false};
};

// The offline recogniser with its US English model. One decoder serves one thread; several
// decoders may work side by side on spans of the same voice.
class SpeechDecoder {
public:
    SpeechDecoder();
    ~SpeechDecoder();
    SpeechDecoder(const SpeechDecoder&) = delete;
    SpeechDecoder& operator=(const SpeechDecoder&) = delete;

    // The folder of the acoustic model, the language model and the dictionary: "en-us" in the
    // folder CLIPQUILL_SPEECH_MODEL_DIR names, or else in the model package's folder.
    static QString modelFolder();
    // Why the model cannot be used (its package is missing); empty when it can.
    static QString missingModelMessage();

    // Loads the model; false with *error set when it cannot.
    bool open(QString* error);

    // Recognises the samples [fromSample, toSample) of a raw 16 kHz mono 16-bit file, utterance
    // by utterance. Word times count from the file's start. Stops within a chunk when a cancel
    // is requested (the words of the utterances finished by then are returned); adds each chunk to
    // progress.samplesDone.
    RecognizedWords decodeSpan(const QString& rawFileSpec, qint64 fromSample, qint64 toSample,
                               DecodingProgress& progress, QString* error);

private:
    bool startUtterance(QString* error);
    // Ends the utterance and appends its words.
    void endUtterance(RecognizedWords& words);

    cmd_ln_s* m_config = nullptr;
    ps_decoder_s* m_decoder = nullptr;
    qint64 m_streamStartSample = 0;
    bool m_inUtterance = false;
};

} // namespace cq
