#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace cq {

class RenderContainer;
class ToolRunner;
struct RunResult;

// The lengths of a written result; -1 where one could not be measured.
struct MeasuredResult {
    qint64 outputMs = -1;
    qint64 videoMs = -1;
    qint64 audioMs = -1;
    QString problem; // why the file is not whole, for the log; empty when it is
};

// Measures a written result without blocking the window: a video result from its own contents
// on a worker thread (a long message has tens of thousands of chunks), a sound-only result by
// ffprobe, or by ffmpeg's own description where there is no ffprobe. Ends with finished, or with
// nothing after cancel().
class ResultCheck : public QObject {
    Q_OBJECT
public:
    ResultCheck(QString file, std::shared_ptr<const RenderContainer> container, QString ffmpeg,
                QString ffprobe, QObject* parent = nullptr);

    void measureVideo();
    void measureSound();
    void cancel();

signals:
    void finished(const cq::MeasuredResult& result);

private:
    void onSoundProbed(const RunResult& result);

    QString m_file;
    std::shared_ptr<const RenderContainer> m_container;
    QString m_ffmpeg;
    QString m_ffprobe;
    ToolRunner* m_runner;
    bool m_cancelled = false;
};

} // namespace cq
