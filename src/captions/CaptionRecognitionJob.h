#pragma once

#include "captions/CaptionCue.h"
#include "captions/CueSplitting.h"
#include "platform/Job.h"
#include "platform/ToolLocator.h"

#include <QList>
#include <QString>
#include <QTimer>

#include <memory>

class QThread;

namespace cq {

class ToolRunner;
struct DecodingProgress;

// Captions from the recorded voice, made in the background: ffmpeg turns the voice (any rate,
// any channels) into 16 kHz mono samples in the work folder, then the recogniser works on them
// in threads of its own, never in the window's thread. A cancel stops the recogniser within
// 100 ms of voice, and the job ends only once no thread of it is running any more. Done, its
// cues are those of the words heard.
class CaptionRecognitionJob : public Job {
    Q_OBJECT
public:
    CaptionRecognitionJob(const QString& voiceWavFileSpec, const ToolLocation& ffmpeg,
                          const QString& workFolder, QObject* parent = nullptr);
    CaptionRecognitionJob(const QString& voiceWavFileSpec, const QString& ffmpegFileSpec,
                          const QString& workFolder, QObject* parent = nullptr);
    // Stops what still runs and waits for its threads, which end within a chunk.
    ~CaptionRecognitionJob() override;

    void start();
    void cancel() override;
    bool isRunning() const override { return m_running; }

    // Decoding threads; 0 (the default) uses two where the machine has two cores and the voice
    // is long enough to be worth cutting.
    void setThreadCount(int threads) { m_threadCount = threads; }
    // The words as they were heard, with their times, and the cues made of them; filled when
    // the job has ended done.
    RecognizedWords words() const { return m_words; }
    CaptionCues cues() const { return m_cues; }

private:
    struct Span;
    void onConverted();
    void startDecoding(qint64 samples);
    int threadsFor(qint64 samples) const;
    void reportProgress();
    void onThreadFinished();
    void finish();
    void fail(const QString& message);
    void stopThreads();
    QString samplesFileSpec() const;

    QString m_voice;
    ToolLocation m_ffmpeg;
    QString m_workFolder;
    ToolRunner* m_runner = nullptr;
    QTimer m_progressTimer;
    std::shared_ptr<DecodingProgress> m_progress;
    QList<QThread*> m_threads;
    QList<std::shared_ptr<Span>> m_spans;
    RecognizedWords m_words;
    CaptionCues m_cues;
    qint64 m_totalSamples = 0;
    int m_threadCount = 0;
    int m_threadsDone = 0;
    bool m_running = false;
    bool m_cancelled = false;
};

} // namespace cq
