#include "text/widgets/SpeechVoice.h"

#include "text/widgets/RetiredSpeechEngine.h"

#include <QTextToSpeech>
#include <QTimer>

namespace cq {

SpeechVoice::SpeechVoice(const QString& engine, QObject* parent) : QObject(parent) {
    const QStringList engines = QTextToSpeech::availableEngines();
    if (engines.isEmpty() || (!engine.isEmpty() && !engines.contains(engine)))
        return;
    m_tts = engine.isEmpty() ? new QTextToSpeech(this) : new QTextToSpeech(engine, this);
    if (m_tts->state() == QTextToSpeech::Error) {
        delete m_tts;
        return;
    }
    connect(m_tts, &QTextToSpeech::stateChanged, this,
            [this](QTextToSpeech::State state) { onStateChanged(state); });
}

SpeechVoice::~SpeechVoice() {
    if (!m_tts || !m_sinceSay.isValid())
        return; // never spoke: the engine goes with this object
    m_tts->disconnect(this);
    // An engine still synthesising or playing must not be torn down now; it is retired instead
    // and goes once that is safe, while this object goes at once.
    const qint64 left = m_synthesisMs - m_sinceSay.elapsed();
    if (left > 0 || m_tts->state() == QTextToSpeech::Speaking)
        new RetiredSpeechEngine(m_tts, static_cast<int>(left));
}

bool SpeechVoice::hasVoice() const {
    return m_tts && m_tts->state() != QTextToSpeech::Error;
}

bool SpeechVoice::isSpeaking() const {
    return m_speaking;
}

void SpeechVoice::SpeakText(const QString& text) {
    if (!hasVoice() || text.trimmed().isEmpty())
        return;
    m_queue.append(text);
    if (!m_speaking)
        speakNext();
}

int SpeechVoice::synthesisMilliseconds(const QString& text) {
    // A generous bound: a start, then a little for every character of the text.
    constexpr int kSynthesisStartMs = 200;
    constexpr int kSynthesisMsPerCharacter = 3;
    return kSynthesisStartMs + kSynthesisMsPerCharacter * static_cast<int>(text.size());
}

void SpeechVoice::StopSpeaking() {
    m_queue.clear();
    if (m_tts && m_speaking) {
        const qint64 wait = m_synthesisMs - m_sinceSay.elapsed();
        const bool alreadyPending = m_stopPending;
        m_stopPending = true;
        if (wait <= 0)
            stopEngine();
        else if (!alreadyPending)
            QTimer::singleShot(static_cast<int>(wait), this, &SpeechVoice::stopEngine);
    }
    if (m_speaking) {
        m_speaking = false;
        emit speakingChanged(false);
    }
}

void SpeechVoice::stopEngine() {
    if (!m_stopPending)
        return; // a new text took over since the stop was asked for
    m_stopPending = false;
    if (m_tts && m_tts->state() == QTextToSpeech::Speaking)
        m_tts->stop();
}

void SpeechVoice::speakNext() {
    if (m_queue.isEmpty() || !hasVoice())
        return;
    const QString text = m_queue.takeFirst();
    if (!m_speaking) {
        m_speaking = true;
        emit speakingChanged(true);
    }
    m_stopPending = false;
    m_sinceSay.start();
    m_synthesisMs = synthesisMilliseconds(text);
    m_tts->say(text);
}

void SpeechVoice::onStateChanged(int state) {
    if (state == QTextToSpeech::Speaking || !m_speaking)
        return;
    if (state == QTextToSpeech::Error)
        m_queue.clear();
    if (!m_queue.isEmpty()) {
        // Not from inside the engine's own notification.
        QMetaObject::invokeMethod(this, &SpeechVoice::speakNext, Qt::QueuedConnection);
        return;
    }
    m_speaking = false;
    emit speakingChanged(false);
}

} // namespace cq
