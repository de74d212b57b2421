#include "library/playback/MasterVolume.h"

#include "library/playback/VolumeSliderMath.h"
#include "platform/ToolRunner.h"

#include <QStandardPaths>

namespace cq {

MasterVolume::MasterVolume(QObject* parent)
    : QObject(parent), m_pactl(QStandardPaths::findExecutable(QStringLiteral("pactl"))),
      m_runner(new ToolRunner(this)) {
    connect(m_runner, &ToolRunner::finished, this, &MasterVolume::onFinished);
}

bool MasterVolume::busy() const {
    return m_runner->isRunning();
}

void MasterVolume::setValue(int masterValue) {
    if (!available())
        return;
    m_pending = masterValue;
    startNext();
}

void MasterVolume::readValue() {
    if (!available())
        return;
    m_pendingRead = true;
    startNext();
}

void MasterVolume::startNext() {
    if (m_runner->isRunning()) // a handler of valueSet or valueRead may have started one
        return;
    if (m_pending) {
        m_running = *m_pending;
        m_pending.reset();
        m_reading = false;
        // A pactl that cannot start ends its run as failed: onFinished reports it.
        m_runner->startProgram(m_pactl, MasterVolumeArguments(m_running));
        return;
    }
    if (m_pendingRead) {
        m_pendingRead = false;
        m_reading = true;
        m_running = -1;
        m_runner->startProgram(
            m_pactl, {QStringLiteral("get-sink-volume"), QStringLiteral("@DEFAULT_SINK@")});
    }
}

void MasterVolume::onFinished() {
    const RunResult result = m_runner->lastResult();
    if (m_reading) {
        m_reading = false;
        const int percent = ParseSinkVolumePercent(QString::fromUtf8(m_runner->standardOutput()));
        if (result.ok() && percent >= 0)
            emit valueRead(MasterValueFromPercent(percent));
    } else if (m_running >= 0) {
        emit valueSet(m_running, result.ok());
        m_running = -1;
    }
    startNext();
}

} // namespace cq
