#pragma once

#include "platform/WavFileWriter.h"
#include "take/LevelMeter.h"
#include "timeline/TimelineClock.h"

#include <QAudioDevice>
#include <QElapsedTimer>
#include <QObject>
#include <QString>

namespace cq {

class Microphone;

// Records the microphone as 16-bit mono PCM at 44,100 samples per second straight into a WAV
// file. The length of the recording and the time of every event are counted from the bytes
// written since the press (88,200 a second), never from the wall clock. A studio keeps the
// microphone listening, so the take starts with the press; without that, the stream is opened
// at the press and the take starts when its first sound arrives.
class Recorder : public QObject, public TimelineClock {
    Q_OBJECT
public:
    static constexpr int kSamplesPerSecond = 44100;
    static constexpr qint64 kBytesPerSecond = 88200;
    static constexpr qint64 kLimitBytes = kBytesPerSecond * 1000; // 1000 seconds

    enum class StartResult { Started, AlreadyRecording, NoInputDevice, FileError };
    enum class EndReason { LimitReached, DeviceLost, WriteFailed };
    Q_ENUM(EndReason)

    explicit Recorder(QObject* parent = nullptr);
    ~Recorder() override;

    static bool hasInputDevice();

    // Keeps the default input open from now on (it follows the default as that changes): the
    // meter shows its level and a take starts writing at the press. False while there is none.
    bool listen();
    bool isListening() const { return m_listening; }
    // Starts writing what the given device (the default input when null) hears into the file.
    StartResult start(const QString& wavFileSpec, const QAudioDevice& device = {});
    // Ends the take and closes the file; returns the bytes captured. The file is removed
    // when nothing was captured. Harmless when not recording.
    qint64 stop();

    bool isRecording() const { return m_recording; }
    bool isCapturing() const { return m_capturing; }
    qint64 capturedBytes() const { return m_writer.dataBytes(); }
    qint64 capturedMs() const { return capturedBytes() * 1000 / kBytesPerSecond; }
    // Voice captured so far, including what the sound system holds ready; once capture has
    // ended early (limit, lost device, full disk) the timeline goes on by the wall clock.
    qint64 elapsedMs() override;
    QString errorString() const { return m_error; }
    // From the press to the first bytes of the take; -1 before.
    qint64 startLatencyMs() const { return m_startLatencyMs; }
    QString fileName() const { return m_writer.fileName(); }
    const LevelMeter& meter() const { return m_meter; }
    Microphone& microphone() { return *m_microphone; }

    void setLimitBytes(qint64 bytes) { m_limitBytes = bytes; }
    void setHeaderEveryBytes(qint64 bytes) { m_writer.setHeaderEveryBytes(bytes); }
    FileSyncer& voiceSyncer() { return m_writer.syncer(); }

signals:
    // Capture ended by itself while the recording goes on; detail says why for a message.
    void captureEnded(cq::Recorder::EndReason reason, const QString& detail);
    // The voice of a stopped take could not be synced to the disk at its end.
    void lastSyncFailed(const QString& why);

private:
    bool openMicrophone(const QAudioDevice& device);
    void onSound(const QByteArray& pcm);
    void write(QByteArray bytes);
    void endCapture();
    void onMicrophoneLost(const QString& why);
    void onSyncFailed(const QString& why);
    void releaseMicrophone();

    Microphone* m_microphone;
    LevelMeter m_meter;
    WavFileWriter m_writer;
    QElapsedTimer m_sinceCaptureEnd;
    QElapsedTimer m_sincePress;
    qint64 m_startLatencyMs = -1;
    qint64 m_limitBytes = kLimitBytes;
    bool m_listening = false;
    bool m_recording = false;
    bool m_capturing = false;
    bool m_syncFailed = false;
    QString m_error;
};

} // namespace cq
