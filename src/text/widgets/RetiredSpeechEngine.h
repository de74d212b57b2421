#pragma once

#include <QElapsedTimer>
#include <QObject>

class QTextToSpeech;

namespace cq {

// Keeps a speech engine alive after its voice has gone, until it can go safely: the flite engine
// of Qt 6.4 crashes when it is stopped or torn down while its thread still synthesises a text
// (it frees its audio output under that thread). The engine is stopped once the synthesis has
// had its time, and deleted a moment later; nothing waits for it meanwhile.
class RetiredSpeechEngine : public QObject {
    Q_OBJECT
public:
    // Takes the engine over and lives on under the application object.
    RetiredSpeechEngine(QTextToSpeech* engine, int synthesisLeftMs);
    // Only before its timers have run when the application itself goes away.
    ~RetiredSpeechEngine() override;

    // How long the engine's thread needs to let go of its sound after a stop.
    static constexpr int kEngineSettleMs = 150;

private:
    void stopEngine();

    QTextToSpeech* m_engine;
    QElapsedTimer m_sinceRetired;
    int m_synthesisLeftMs;
    bool m_stopped = false;
};

} // namespace cq
