#include "take/Microphone.h"

#include <QAudioFormat>
#include <QAudioSource>
#include <QMediaDevices>

namespace cq {

namespace {
QAudioFormat voiceFormat() {
    QAudioFormat format;
    format.setSampleRate(Microphone::kSamplesPerSecond);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}

bool isPresent(const QAudioDevice& device) {
    for (const QAudioDevice& d : QMediaDevices::audioInputs())
        if (d.id() == device.id())
            return true;
    return false;
}

// The default input; when the one the system named has gone, the first input there is.
QAudioDevice defaultInput() {
    const QAudioDevice named = QMediaDevices::defaultAudioInput();
    if (!named.isNull() && isPresent(named))
        return named;
    const QList<QAudioDevice> inputs = QMediaDevices::audioInputs();
    return inputs.isEmpty() ? QAudioDevice() : inputs.first();
}
} // namespace

Microphone::Microphone(QObject* parent) : QObject(parent) {
    // The sound system does not always say when an input goes away or the default changes (a
    // stream of a removed source may even go on from another one): look once a second.
    m_check.setInterval(1000);
    connect(&m_check, &QTimer::timeout, this, &Microphone::check);
}

Microphone::~Microphone() {
    close();
}

bool Microphone::open(const QAudioDevice& device) {
    closeSource();
    m_wanted = true;
    m_followDefault = device.isNull();
    m_check.start();
    return openSource(device.isNull() ? defaultInput() : device);
}

void Microphone::close() {
    m_wanted = false;
    m_check.stop();
    closeSource();
}

bool Microphone::openSource(const QAudioDevice& device) {
    m_device = device;
    if (device.isNull()) {
        m_error = QStringLiteral("no sound input was found");
        return false;
    }
    // Without a parent: the sound system's own stream object takes the same parent as the
    // source, and as a child it would be destroyed with the microphone (see closeSource).
    m_source = new QAudioSource(device, voiceFormat());
    // A small buffer keeps the bytes counted close to what the microphone has just heard.
    m_source->setBufferSize(static_cast<qsizetype>(kBytesPerSecond / 20));
    // Queued: a failure is reported from inside a read, and the stream must not be stopped
    // under the read that is still running.
    connect(m_source, &QAudioSource::stateChanged, this, &Microphone::onStateChanged,
            Qt::QueuedConnection);
    m_io = m_source->start();
    if (!m_io) {
        m_error = QStringLiteral("the sound input could not be opened");
        closeSource();
        return false;
    }
    m_error.clear();
    connect(m_io, &QIODevice::readyRead, this, &Microphone::drain);
    m_sinceLastBytes.start();
    emit opened();
    return true;
}

void Microphone::closeSource() {
    if (!m_source)
        return;
    QAudioSource* source = m_source;
    if (m_io)
        m_io->disconnect(this);
    m_source = nullptr;
    m_io = nullptr;
    source->disconnect(this);
    source->stop();
    // The sound system's stream runs the event loop while it is destroyed. Deleted here, from a
    // handler or from the destructor of whatever holds the microphone, it would hand events to
    // objects half torn down, itself included; the main loop deletes it instead.
    source->deleteLater();
}

void Microphone::drain() {
    if (!m_io)
        return;
    const QByteArray bytes = m_io->readAll();
    if (bytes.isEmpty())
        return;
    m_sinceLastBytes.start();
    emit sound(bytes);
}

void Microphone::onStateChanged() {
    // A change queued by a stream closed since is no news of the one open now.
    if (!m_source || sender() != m_source || m_source->error() == QAudio::NoError)
        return;
    if (m_source->state() != QAudio::StoppedState && m_source->error() != QAudio::FatalError &&
        m_source->error() != QAudio::OpenError)
        return;
    drain();
    loseStream(QStringLiteral("the sound input stopped working"));
}

void Microphone::loseStream(const QString& why) {
    if (!m_source)
        return;
    m_error = why;
    closeSource();
    // A given device that went stays closed; the default is looked for again at the next check.
    if (!m_followDefault) {
        m_wanted = false;
        m_check.stop();
    }
    emit lost(why);
}

void Microphone::check() {
    if (!m_wanted)
        return;
    if (m_source) {
        checkStream();
        return;
    }
    if (m_followDefault)
        openSource(defaultInput());
}

void Microphone::checkStream() {
    drain();
    const bool present = isPresent(m_device);
    if (!present || m_sinceLastBytes.elapsed() > kStallMs) {
        loseStream(
            present
                ? QStringLiteral("the sound input \"%1\" stopped delivering sound")
                      .arg(m_device.description())
                : QStringLiteral("the sound input \"%1\" was removed").arg(m_device.description()));
        return;
    }
    if (!m_followDefault || m_held)
        return;
    const QAudioDevice current = defaultInput();
    if (!current.isNull() && current.id() != m_device.id()) {
        closeSource();
        openSource(current);
    }
}

} // namespace cq
