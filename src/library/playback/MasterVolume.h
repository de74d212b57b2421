#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace cq {

class ToolRunner;

// The device-wide playback volume: the default sink of the sound server, set with pactl. Values
// use the master scale 0 to 65336. Setting never waits and never reports a failure; while one
// change runs, only the newest of the values asked for meanwhile follows it.
class MasterVolume : public QObject {
    Q_OBJECT
public:
    explicit MasterVolume(QObject* parent = nullptr);

    bool available() const { return !m_pactl.isEmpty(); }
    void setValue(int masterValue);
    // Asks the sound server for the current volume; valueRead follows (not when it fails).
    void readValue();
    bool busy() const;

signals:
    void valueSet(int masterValue, bool ok);
    void valueRead(int masterValue);

private:
    void startNext();
    void onFinished();

    QString m_pactl;
    ToolRunner* m_runner = nullptr;
    std::optional<int> m_pending;
    int m_running = -1; // the value being set, -1 when reading or idle
    bool m_pendingRead = false;
    bool m_reading = false;
};

} // namespace cq
