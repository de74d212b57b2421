#include "captions/CaptionRecognitionJob.h"

#include "captions/SpeechDecoder.h"
#include "captions/VoiceSplitting.h"
#include "platform/ToolRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace cq {

namespace {

// A voice shorter than this is not worth a second decoder: loading the model costs more.
constexpr qint64 kMinSamplesToCut = 20LL * kSpeechSamplesPerSecond;
constexpr int kProgressIntervalMs = 100;
// The decoders go up to here: the last percent waits until their words are cues.
constexpr qint64 kDecodedPercent = 99;

} // namespace

struct CaptionRecognitionJob::Span {
    qint64 fromSample = 0;
    qint64 toSample = 0;
    RecognizedWords words;
    QString error;
};

CaptionRecognitionJob::CaptionRecognitionJob(const QString& voiceWavFileSpec,
                                             const ToolLocation& ffmpeg, const QString& workFolder,
                                             QObject* parent)
    : Job(parent), m_voice(voiceWavFileSpec), m_ffmpeg(ffmpeg), m_workFolder(workFolder) {
    m_progressTimer.setInterval(kProgressIntervalMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &CaptionRecognitionJob::reportProgress);
}

CaptionRecognitionJob::CaptionRecognitionJob(const QString& voiceWavFileSpec,
                                             const QString& ffmpegFileSpec,
                                             const QString& workFolder, QObject* parent)
    : CaptionRecognitionJob(
          voiceWavFileSpec,
          ToolLocation{ffmpegFileSpec, QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg")},
          workFolder, parent) {}

CaptionRecognitionJob::~CaptionRecognitionJob() {
    stopThreads();
    if (m_running)
        QFile::remove(samplesFileSpec());
}

QString CaptionRecognitionJob::samplesFileSpec() const {
    return QDir(m_workFolder).filePath(QStringLiteral("CaptionVoice16k.raw"));
}

void CaptionRecognitionJob::start() {
    if (m_running)
        return;
    m_running = true;
    m_cancelled = false;
    m_words.clear();
    m_cues.clear();
    if (!m_ffmpeg.found())
        return fail(m_ffmpeg.missingMessage());
    if (const QString missing = SpeechDecoder::missingModelMessage(); !missing.isEmpty())
        return fail(missing);
    if (!QFileInfo(m_voice).isFile())
        return fail(QStringLiteral("There is no recorded voice to make captions from."));
    if (!QDir().mkpath(m_workFolder))
        return fail(QStringLiteral("The work folder could not be made."));
    if (!m_runner) {
        m_runner = new ToolRunner(this);
        connect(m_runner, &ToolRunner::finished, this, &CaptionRecognitionJob::onConverted);
    }
    restartProgress();
    // 16-bit mono at the recogniser's rate, raw: the decoders read it in chunks from any place.
    QStringList arguments =
        QStringLiteral("-nostdin -hide_banner -loglevel error -y -i").split(u' ');
    arguments
        << m_voice
        << QStringLiteral("-vn -ac 1 -ar %1 -f s16le").arg(kSpeechSamplesPerSecond).split(u' ')
        << samplesFileSpec();
    if (!m_runner->startProgram(m_ffmpeg.path, arguments))
        fail(QStringLiteral("ffmpeg could not be started: %1")
                 .arg(m_runner->lastResult().errorText));
}

void CaptionRecognitionJob::cancel() {
    if (!m_running || m_cancelled)
        return;
    m_cancelled = true;
    if (m_progress)
        m_progress->cancelRequested = true;
    if (m_runner && m_runner->isRunning())
        m_runner->cancel();
}

void CaptionRecognitionJob::onConverted() {
    const RunResult result = m_runner->lastResult();
    if (m_cancelled || result.cancelled())
        return finish();
    if (!result.ok())
        return fail(QStringLiteral("ffmpeg could not read the recorded voice: %1")
                        .arg(result.errorText.trimmed()));
    startDecoding(QFileInfo(samplesFileSpec()).size() / qint64(sizeof(qint16)));
}

int CaptionRecognitionJob::threadsFor(qint64 samples) const {
    if (m_threadCount > 0)
        return m_threadCount;
    return samples >= kMinSamplesToCut && QThread::idealThreadCount() >= 2 ? 2 : 1;
}

void CaptionRecognitionJob::startDecoding(qint64 samples) {
    m_totalSamples = samples;
    m_progress = std::make_shared<DecodingProgress>();
    m_threadsDone = 0;
    const QList<qint64> bounds = VoiceSpanBounds(samplesFileSpec(), samples, threadsFor(samples));
    const QString rawFileSpec = samplesFileSpec();
    for (qsizetype i = 0; i + 1 < bounds.size(); ++i) {
        auto span = std::make_shared<Span>();
        span->fromSample = bounds.at(i);
        span->toSample = bounds.at(i + 1);
        m_spans << span;
        QThread* thread = QThread::create([span, progress = m_progress, rawFileSpec] {
            SpeechDecoder decoder;
            if (!progress->cancelRequested && decoder.open(&span->error))
                span->words = decoder.decodeSpan(rawFileSpec, span->fromSample, span->toSample,
                                                 *progress, &span->error);
        });
        connect(thread, &QThread::finished, this, &CaptionRecognitionJob::onThreadFinished,
                Qt::QueuedConnection);
        m_threads << thread;
    }
    for (QThread* thread : std::as_const(m_threads))
        thread->start(QThread::LowPriority);
    m_progressTimer.start();
    if (m_threads.isEmpty())
        finish();
}

void CaptionRecognitionJob::reportProgress() {
    if (!m_progress || m_totalSamples <= 0)
        return;
    setProgress(int(qMin(kDecodedPercent, m_progress->samplesDone * 100 / m_totalSamples)));
}

void CaptionRecognitionJob::onThreadFinished() {
    // Each thread says so as its last act; finish() waits out the instant it still needs.
    if (++m_threadsDone == m_threads.size())
        finish();
}

void CaptionRecognitionJob::stopThreads() {
    if (m_progress)
        m_progress->cancelRequested = true;
    for (QThread* thread : std::as_const(m_threads)) {
        thread->wait(); // a decoder stops within one chunk of voice
        delete thread;
    }
    m_threads.clear();
}

void CaptionRecognitionJob::finish() {
    m_progressTimer.stop();
    stopThreads();
    QFile::remove(samplesFileSpec());
    QString error;
    for (const auto& span : std::as_const(m_spans)) {
        m_words << span->words;
        if (error.isEmpty())
            error = span->error;
    }
    m_spans.clear();
    m_progress.reset();
    m_running = false;
    if (m_cancelled)
        return end(JobEnd::cancelled());
    if (!error.isEmpty())
        return end(JobEnd::failed(error));
    m_cues = CuesFromWords(m_words);
    setProgress(100);
    end(JobEnd::done());
}

void CaptionRecognitionJob::fail(const QString& message) {
    m_progressTimer.stop();
    m_running = false;
    QFile::remove(samplesFileSpec());
    end(JobEnd::failed(message));
}

} // namespace cq
