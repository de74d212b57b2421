#pragma once

#include <QAudioDevice>
#include <QByteArray>
#include <QElapsedTimer>
#include <QIODevice>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

class QAudioSource;

namespace cq {

// The sound input as 16-bit mono PCM at 44,100 samples per second, kept open so its level can be
// shown and a recording can start at the press instead of after the sound system has set up a
// stream. Opened on the default input it follows the default as it changes and opens again after
// the stream fails; opened on a given device it stays with that one.
class Microphone : public QObject {
    Q_OBJECT
public:
    static constexpr int kSamplesPerSecond = 44100;
    static constexpr qint64 kBytesPerSecond = 88200;
    // A sound input that delivers nothing for this long has gone.
    static constexpr int kStallMs = 3000;

    explicit Microphone(QObject* parent = nullptr);
    ~Microphone() override;

    // Opens the device, or the default input when null; false with errorString() set when there
    // is none or it cannot be opened (the default is still looked for once a second).
    bool open(const QAudioDevice& device = {});
    void close();
    bool isOpen() const { return m_source != nullptr; }
    bool followsDefault() const { return m_followDefault; }
    QAudioDevice device() const { return m_device; }
    QString errorString() const { return m_error; }
    // While held, a new default input waits: a take keeps the device it started on.
    void setDeviceHeld(bool held) { m_held = held; }
    // Hands on at once whatever the sound system holds ready.
    void drain();

signals:
    void sound(const QByteArray& pcm);
    // The stream failed or its device went away; why says which, for a message.
    void lost(const QString& why);
    // A stream was opened (again); the level measured so far belongs to another one.
    void opened();

private:
    bool openSource(const QAudioDevice& device);
    void closeSource();
    void onStateChanged();
    void check();
    void checkStream();
    void loseStream(const QString& why);

    // Owned while open; closeSource hands it to the main loop to delete.
    QAudioSource* m_source = nullptr;
    // The source's reader goes with the source's stream, which a failing sound server may close
    // before a queued state change is handled.
    QPointer<QIODevice> m_io;
    QAudioDevice m_device;
    QTimer m_check;
    QElapsedTimer m_sinceLastBytes;
    QString m_error;
    bool m_wanted = false;
    bool m_followDefault = true;
    bool m_held = false;
};

} // namespace cq
