#pragma once

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
// A sound found in the work space is there at once after start(): isRunning() is false and
// finished does not come. Otherwise finished comes once; file() is empty when the sound could
// not be made, and problem() says why.
class VoiceSound : public QObject {
    Q_OBJECT
public:
    VoiceSound(QString ffmpeg, QString voice, QString filter, const RenderContainer& container,
               QString folder, ToolPool& pool, QObject* parent = nullptr);
    ~VoiceSound() override;

    void start();
    void cancel();
    // Removes the finished sound, so that the next render makes it again.
    void discard();
    bool isRunning() const { return m_taskId != 0; }
    bool reused() const { return m_reused; }
    QString file() const { return m_file; }
    QString problem() const { return m_problem; }

signals:
    void logLine(const QString& line);
    void finished();

private:
    QString encodeLine() const;
    void onTaskFinished(int id, const RunResult& result);
    void removeOthers() const;

    QString m_ffmpeg;
    QString m_voice;
    QString m_filter;
    const RenderContainer& m_container;
    QString m_folder;
    QPointer<ToolPool> m_pool;
    QString m_keptFile;
    QString m_partial;
    QString m_file;
    QString m_problem;
    int m_taskId = 0;
    bool m_reused = false;
};

} // namespace cq
