#pragma once

#include <QElapsedTimer>
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
    void stopEngine();

    // The flite engine of Qt 6.4 crashes when stopped while it is still synthesising a text
    // (it frees its audio output under the synthesis thread), so the stop waits until the
    // synthesis of the text being spoken has had time to end.
    static int synthesisMilliseconds(const QString& text);

    QPointer<QTextToSpeech> m_tts;
    QStringList m_queue;
    bool m_speaking = false;
    QElapsedTimer m_sinceSay;
    int m_synthesisMs = 0;
    bool m_stopPending = false;
};

} // namespace cq
