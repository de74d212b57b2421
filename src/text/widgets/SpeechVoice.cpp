#include "text/widgets/SpeechVoice.h"

#include <QTextToSpeech>

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
    StopSpeaking();
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

void SpeechVoice::StopSpeaking() {
    m_queue.clear();
    if (m_tts && m_tts->state() == QTextToSpeech::Speaking)
        m_tts->stop();
    if (m_speaking) {
        m_speaking = false;
        emit speakingChanged(false);
    }
}

void SpeechVoice::speakNext() {
    if (m_queue.isEmpty() || !hasVoice())
        return;
    const QString text = m_queue.takeFirst();
    if (!m_speaking) {
        m_speaking = true;
        emit speakingChanged(true);
    }
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
