#include "timeline/Recorder.h"

#include <QAudioFormat>
#include <QAudioSource>
#include <QFile>
#include <QMediaDevices>

namespace cq {

namespace {
QAudioFormat voiceFormat() {
    QAudioFormat format;
    format.setSampleRate(Recorder::kSamplesPerSecond);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}
} // namespace

Recorder::Recorder(QObject* parent) : QObject(parent), m_writer(kSamplesPerSecond, 1) {
    // The sound system does not always say when an input goes away (a stream of a removed
    // source may even go on from another one): look for it once a second.
    m_deviceCheck.setInterval(1000);
    connect(&m_deviceCheck, &QTimer::timeout, this, &Recorder::checkDevice);
}

Recorder::~Recorder() {
    stop();
}

bool Recorder::hasInputDevice() {
    return !QMediaDevices::defaultAudioInput().isNull();
}

Recorder::StartResult Recorder::start(const QString& wavFileSpec, const QAudioDevice& device) {
    if (m_recording)
        return StartResult::AlreadyRecording;
    m_error.clear();
    m_device = device.isNull() ? QMediaDevices::defaultAudioInput() : device;
    if (m_device.isNull())
        return StartResult::NoInputDevice;
    if (!m_writer.open(wavFileSpec)) {
        m_error = m_writer.errorString();
        return StartResult::FileError;
    }
    m_source = new QAudioSource(m_device, voiceFormat(), this);
    // A small buffer keeps the bytes we count close to what the microphone has heard.
    m_source->setBufferSize(static_cast<qsizetype>(kBytesPerSecond / 20));
    connect(m_source, &QAudioSource::stateChanged, this, &Recorder::onStateChanged);
    m_startLatencyMs = -1;
    m_sinceCaptureStart.start();
    m_io = m_source->start();
    if (!m_io) {
        m_error = QStringLiteral("the sound input could not be opened");
        delete m_source;
        m_source = nullptr;
        m_writer.close();
        QFile::remove(wavFileSpec);
        return StartResult::NoInputDevice;
    }
    connect(m_io, &QIODevice::readyRead, this, &Recorder::drain);
    m_sinceLastBytes.start();
    m_deviceCheck.start();
    m_recording = true;
    return StartResult::Started;
}

void Recorder::drain() {
    if (!m_io)
        return;
    QByteArray bytes = m_io->readAll();
    if (bytes.isEmpty())
        return;
    if (m_startLatencyMs < 0)
        m_startLatencyMs = m_sinceCaptureStart.elapsed();
    m_sinceLastBytes.start();
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
    if (!m_source)
        return;
    m_deviceCheck.stop();
    QAudioSource* source = m_source;
    m_source = nullptr;
    m_io = nullptr;
    source->disconnect(this);
    source->stop();
    source->deleteLater();
    m_writer.updateHeader();
    m_sinceCaptureEnd.start();
}

void Recorder::onStateChanged() {
    if (!m_source || m_source->error() == QAudio::NoError)
        return;
    if (m_source->state() != QAudio::StoppedState && m_source->error() != QAudio::FatalError &&
        m_source->error() != QAudio::OpenError)
        return;
    drain();
    if (!m_source)
        return;
    m_error = QStringLiteral("the sound input stopped working");
    endCapture();
    emit captureEnded(EndReason::DeviceLost, m_error);
}

void Recorder::checkDevice() {
    if (!m_source)
        return;
    drain();
    if (!m_source)
        return;
    bool present = false;
    for (const QAudioDevice& d : QMediaDevices::audioInputs())
        present = present || d.id() == m_device.id();
    const bool stalled = m_sinceLastBytes.elapsed() > kStallMs;
    if (present && !stalled)
        return;
    m_error =
        present ? QStringLiteral("the sound input \"%1\" stopped delivering sound")
                      .arg(m_device.description())
                : QStringLiteral("the sound input \"%1\" was removed").arg(m_device.description());
    endCapture();
    emit captureEnded(EndReason::DeviceLost, m_error);
}

qint64 Recorder::elapsedMs() {
    if (m_source)
        drain();
    if (m_recording && !m_source && m_sinceCaptureEnd.isValid())
        return capturedMs() + m_sinceCaptureEnd.elapsed();
    return capturedMs();
}

qint64 Recorder::stop() {
    if (!m_recording)
        return 0;
    drain();
    endCapture();
    m_recording = false;
    m_sinceCaptureEnd.invalidate();
    const qint64 bytes = m_writer.dataBytes();
    const QString file = m_writer.fileName();
    if (!m_writer.close() && m_error.isEmpty())
        m_error = m_writer.errorString();
    if (bytes == 0)
        QFile::remove(file);
    return bytes;
}

} // namespace cq
