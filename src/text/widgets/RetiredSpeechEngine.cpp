#include "text/widgets/RetiredSpeechEngine.h"

#include <QCoreApplication>
#include <QTextToSpeech>
#include <QThread>
#include <QTimer>

namespace cq {

RetiredSpeechEngine::RetiredSpeechEngine(QTextToSpeech* engine, int synthesisLeftMs)
    : QObject(QCoreApplication::instance()), m_engine(engine),
      m_synthesisLeftMs(std::max(0, synthesisLeftMs)) {
    m_sinceRetired.start();
    m_engine->setParent(this);
    QTimer::singleShot(m_synthesisLeftMs, this, &RetiredSpeechEngine::stopEngine);
}

RetiredSpeechEngine::~RetiredSpeechEngine() {
    if (m_stopped)
        return; // settled; the engine goes with its parent
    // The application is ending and no event loop runs any more: the engine's own thread
    // finishes the synthesis on its own, so plain sleeping gives it the time it needs.
    const qint64 left = m_synthesisLeftMs - m_sinceRetired.elapsed();
    if (left > 0)
        QThread::msleep(static_cast<unsigned long>(left));
    stopEngine();
    QThread::msleep(kEngineSettleMs);
}

void RetiredSpeechEngine::stopEngine() {
    if (m_stopped)
        return;
    m_stopped = true;
    if (m_engine->state() == QTextToSpeech::Speaking)
        m_engine->stop();
    QTimer::singleShot(kEngineSettleMs, this, &QObject::deleteLater);
}

} // namespace cq
