#pragma once

#include "platform/ToolCommand.h"

#include <QObject>
#include <QPointer>
#include <QString>

namespace cq {

class RenderContainer;
class ToolPool;
struct RunResult;

// The voice, through its filters, in the result's sound codec, made through the shared tool pool
// beside the pieces, so that the join only copies streams. It is kept in the render's work space
// under a key of the voice file, its filters and the encoder's options: a render of the same
// voice with the same treatment finds it made. Only the sound of the voice in hand stays.
//
// A sound counts only once it is read back whole and as long as the voice, whether it was just
// made or kept from an earlier render: a kept sound cut short since is made again. A kept sound
// that passes is there at once after start(): isRunning() is false and finished does not come.
// Otherwise finished comes once; file() is empty when the sound could not be made, problem()
// says why, and lackOfSpace() says so when the disk was full or the file might not grow.
class VoiceSound : public QObject {
    Q_OBJECT
public:
    // voiceMs: the voice's length, which the sound must have.
    VoiceSound(QString ffmpeg, QString voice, qint64 voiceMs, QString filter,
               const RenderContainer& container, QString folder, ToolPool& pool,
               QObject* parent = nullptr);
    // A sound may differ from the voice by this much: the encoder's last frame is padded.
    static constexpr qint64 kToleranceMs = 100;
    ~VoiceSound() override;

    void start();
    void cancel();
    // Removes the finished sound, so that the next render makes it again.
    void discard();
    bool isRunning() const { return m_taskId != 0; }
    bool reused() const { return m_reused; }
    QString file() const { return m_file; }
    QString problem() const { return m_problem; }
    QString lackOfSpace() const { return m_lackOfSpace; }

signals:
    void logLine(const QString& line);
    void finished();

private:
    ToolCommand encodeCommand() const;
    void onTaskFinished(int id, const RunResult& result);
    // Why the sound file is not whole or not the voice's length; empty when it can be used.
    QString soundProblem(const QString& file) const;
    QString madeProblem(const RunResult& result);
    void removeOthers() const;

    QString m_ffmpeg;
    QString m_voice;
    qint64 m_voiceMs = 0;
    QString m_filter;
    const RenderContainer& m_container;
    QString m_folder;
    QPointer<ToolPool> m_pool;
    QString m_keptFile;
    QString m_partial;
    QString m_file;
    QString m_problem;
    QString m_lackOfSpace;
    int m_taskId = 0;
    bool m_reused = false;
};

} // namespace cq
