#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QTextToSpeech;

namespace cq {

// The system's speech voice. Speaking never waits and never reports a problem: without a voice
// installed the text is simply not heard. A text asked for while another is being spoken waits
// its turn; StopSpeaking drops everything.
class SpeechVoice : public QObject {
    Q_OBJECT
public:
    // engine: a text-to-speech engine name, empty for the system's default.
    explicit SpeechVoice(const QString& engine = QString(), QObject* parent = nullptr);
    ~SpeechVoice() override;

    void SpeakText(const QString& text);
    void StopSpeaking();

    bool hasVoice() const;
    bool isSpeaking() const;
    int queuedCount() const { return static_cast<int>(m_queue.size()); }

signals:
    void speakingChanged(bool speaking);

private:
    void onStateChanged(int state);
    void speakNext();

    QPointer<QTextToSpeech> m_tts;
    QStringList m_queue;
    bool m_speaking = false;
};

} // namespace cq
