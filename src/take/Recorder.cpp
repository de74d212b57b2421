#include "take/Recorder.h"

#include "take/Microphone.h"

#include <QFile>
#include <QMediaDevices>

namespace cq {

Recorder::Recorder(QObject* parent)
    : QObject(parent), m_microphone(new Microphone(this)), m_writer(kSamplesPerSecond, 1) {
    // Half a second between header updates keeps a killed take playable to within a second.
    m_writer.setHeaderEveryBytes(kBytesPerSecond / 2);
    connect(m_microphone, &Microphone::sound, this, &Recorder::onSound);
    connect(m_microphone, &Microphone::lost, this, &Recorder::onMicrophoneLost);
    connect(m_microphone, &Microphone::opened, this, [this] { m_meter.reset(); });
    connect(&m_writer.syncer(), &FileSyncer::syncFailed, this, &Recorder::onSyncFailed);
}

Recorder::~Recorder() {
    // On the way out no stream is opened again, and the microphone lets go of its stream while
    // the meter and the file it feeds are still there.
    m_listening = false;
    stop();
    m_microphone->close();
}

bool Recorder::hasInputDevice() {
    return !QMediaDevices::defaultAudioInput().isNull();
}

bool Recorder::listen() {
    m_listening = true;
    if (m_microphone->isOpen() && m_microphone->followsDefault())
        return true;
    return m_microphone->open();
}

bool Recorder::openMicrophone(const QAudioDevice& device) {
    if (device.isNull()) {
        if (m_microphone->isOpen() && m_microphone->followsDefault())
            return true;
        if (!hasInputDevice())
            return false;
        return m_microphone->open();
    }
    if (m_microphone->isOpen() && m_microphone->device().id() == device.id())
        return true;
    return m_microphone->open(device);
}

Recorder::StartResult Recorder::start(const QString& wavFileSpec, const QAudioDevice& device) {
    if (m_recording)
        return StartResult::AlreadyRecording;
    m_error.clear();
    if (!openMicrophone(device)) {
        m_error = m_microphone->errorString();
        releaseMicrophone();
        return StartResult::NoInputDevice;
    }
    if (!m_writer.open(wavFileSpec)) {
        m_error = m_writer.errorString();
        releaseMicrophone();
        return StartResult::FileError;
    }
    // What the microphone heard before the press only goes to the meter.
    m_microphone->drain();
    m_microphone->setDeviceHeld(true);
    m_meter.setWatchingSilence(true);
    m_startLatencyMs = -1;
    m_syncFailed = false;
    m_sincePress.start();
    m_sinceCaptureEnd.invalidate();
    m_recording = true;
    m_capturing = true;
    return StartResult::Started;
}

void Recorder::onSound(const QByteArray& pcm) {
    m_meter.addSamples(pcm);
    if (m_capturing)
        write(pcm);
}

void Recorder::write(QByteArray bytes) {
    if (m_startLatencyMs < 0)
        m_startLatencyMs = m_sincePress.elapsed();
    const qint64 room = m_limitBytes - m_writer.dataBytes();
    const bool full = bytes.size() >= room;
    if (full)
        bytes.truncate(std::max<qint64>(0, room));
    if (!m_writer.append(bytes)) {
        m_error = m_writer.errorString();
        endCapture();
        emit captureEnded(EndReason::WriteFailed, m_error);
        return;
    }
    if (full) {
        endCapture();
        emit captureEnded(EndReason::LimitReached, QString());
    }
}

void Recorder::endCapture() {
    if (!m_capturing)
        return;
    m_capturing = false;
    m_writer.updateHeader();
    m_sinceCaptureEnd.start();
}

void Recorder::onMicrophoneLost(const QString& why) {
    m_meter.reset();
    if (!m_capturing)
        return;
    m_error = why;
    endCapture();
    emit captureEnded(EndReason::DeviceLost, m_error);
}

void Recorder::onSyncFailed(const QString& why) {
    // One report a take: the syncs asked for meanwhile fail alike.
    if (m_syncFailed)
        return;
    m_syncFailed = true;
    // A disk that cannot keep the voice ends the capture as a refused write does.
    const QString detail = QStringLiteral("it could not be synced to the disk: %1").arg(why);
    if (!m_capturing) {
        emit lastSyncFailed(detail);
        return;
    }
    m_error = detail;
    endCapture();
    emit captureEnded(EndReason::WriteFailed, m_error);
}

qint64 Recorder::elapsedMs() {
    if (m_capturing)
        m_microphone->drain();
    if (m_recording && !m_capturing && m_sinceCaptureEnd.isValid())
        return capturedMs() + m_sinceCaptureEnd.elapsed();
    return capturedMs();
}

void Recorder::releaseMicrophone() {
    m_microphone->setDeviceHeld(false);
    if (!m_listening)
        m_microphone->close();
    else if (!m_microphone->followsDefault() || !m_microphone->isOpen())
        m_microphone->open();
}

qint64 Recorder::stop() {
    if (!m_recording)
        return 0;
    if (m_capturing)
        m_microphone->drain();
    endCapture();
    m_recording = false;
    m_meter.setWatchingSilence(false);
    m_sinceCaptureEnd.invalidate();
    const qint64 bytes = m_writer.dataBytes();
    const QString file = m_writer.fileName();
    if (!m_writer.close() && m_error.isEmpty())
        m_error = m_writer.errorString();
    if (bytes == 0)
        QFile::remove(file);
    releaseMicrophone();
    return bytes;
}

} // namespace cq
