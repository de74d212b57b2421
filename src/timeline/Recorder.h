#pragma once

#include "platform/WavFileWriter.h"
#include "timeline/TimelineClock.h"

#include <QAudioDevice>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

class QAudioSource;
class QIODevice;

namespace cq {

// Captures the microphone as 16-bit mono PCM at 44,100 samples per second straight into a WAV
// file. The length of the recording and the time of every event are counted from the bytes
// that actually arrived (88,200 a second), never from the wall clock: capture starts a good
// fraction of a second after it is asked to.
class Recorder : public QObject, public TimelineClock {
    Q_OBJECT
public:
    static constexpr int kSamplesPerSecond = 44100;
    static constexpr qint64 kBytesPerSecond = 88200;
    static constexpr qint64 kLimitBytes = kBytesPerSecond * 1000; // 1000 seconds
    // A sound input that delivers nothing for this long has gone.
    static constexpr int kStallMs = 3000;

    enum class StartResult { Started, AlreadyRecording, NoInputDevice, FileError };
    enum class EndReason { LimitReached, DeviceLost, WriteFailed };
    Q_ENUM(EndReason)

    explicit Recorder(QObject* parent = nullptr);
    ~Recorder() override;

    static bool hasInputDevice();

    // Starts capture from the given device (the default input when null) into the file.
    StartResult start(const QString& wavFileSpec, const QAudioDevice& device = {});
    // Ends capture and closes the file; returns the bytes captured. The file is removed
    // when nothing was captured. Harmless when not recording.
    qint64 stop();

    bool isRecording() const { return m_recording; }
    bool isCapturing() const { return m_source != nullptr; }
    qint64 capturedBytes() const { return m_writer.dataBytes(); }
    qint64 capturedMs() const { return capturedBytes() * 1000 / kBytesPerSecond; }
    // Voice captured so far, including what the sound system holds ready; once capture has
    // ended early (limit, lost device, full disk) the timeline goes on by the wall clock.
    qint64 elapsedMs() override;
    QString errorString() const { return m_error; }
    // How long the sound system took from the start of capture to the first bytes; -1 before.
    qint64 startLatencyMs() const { return m_startLatencyMs; }
    QString fileName() const { return m_writer.fileName(); }

    void setLimitBytes(qint64 bytes) { m_limitBytes = bytes; }
    void setHeaderEveryBytes(qint64 bytes) { m_writer.setHeaderEveryBytes(bytes); }

signals:
    // Capture ended by itself while the recording goes on; detail says why for a message.
    void captureEnded(cq::Recorder::EndReason reason, const QString& detail);

private:
    void drain();
    void endCapture();
    void onStateChanged();
    void checkDevice();

    QAudioSource* m_source = nullptr;
    QIODevice* m_io = nullptr;
    QAudioDevice m_device;
    WavFileWriter m_writer;
    QElapsedTimer m_sinceCaptureEnd;
    QElapsedTimer m_sinceCaptureStart;
    QElapsedTimer m_sinceLastBytes;
    QTimer m_deviceCheck;
    qint64 m_startLatencyMs = -1;
    qint64 m_limitBytes = kLimitBytes;
    bool m_recording = false;
    QString m_error;
};

} // namespace cq
