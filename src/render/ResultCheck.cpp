#include "render/ResultCheck.h"

#include "platform/FfmpegOutput.h"
#include "platform/ToolRunner.h"
#include "render/RenderContainer.h"

#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>

namespace cq {

ResultCheck::ResultCheck(QString file, std::shared_ptr<const RenderContainer> container,
                         QString ffmpeg, QString ffprobe, QObject* parent)
    : QObject(parent), m_file(std::move(file)), m_container(std::move(container)),
      m_ffmpeg(std::move(ffmpeg)), m_ffprobe(std::move(ffprobe)), m_runner(new ToolRunner(this)) {
    connect(m_runner, &ToolRunner::finished, this, &ResultCheck::onSoundProbed);
}

void ResultCheck::measureVideo() {
    auto promise = std::make_shared<QPromise<ResultLengths>>();
    auto* watcher = new QFutureWatcher<ResultLengths>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (m_cancelled)
            return;
        const ResultLengths lengths = watcher->result();
        emit finished({std::max(lengths.videoMs, lengths.audioMs), lengths.videoMs, lengths.audioMs,
                       lengths.problem});
    });
    watcher->setFuture(promise->future());
    // The container is shared with the task, so the task may outlive this check.
    QThreadPool::globalInstance()->start([promise, container = m_container, file = m_file] {
        promise->start();
        promise->addResult(container->measure(file));
        promise->finish();
    });
}

void ResultCheck::measureSound() {
    if (m_ffprobe.isEmpty()) {
        // Without ffprobe, ffmpeg's own description gives the container's length.
        m_runner->startProgram(m_ffmpeg,
                               {QStringLiteral("-nostdin"), QStringLiteral("-hide_banner"),
                                QStringLiteral("-i"), m_file});
        return;
    }
    m_runner->startProgram(
        m_ffprobe, {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                    QStringLiteral("format=duration:stream=codec_type,duration"),
                    QStringLiteral("-of"), QStringLiteral("default=nw=1"), m_file});
}

void ResultCheck::cancel() {
    m_cancelled = true;
    m_runner->disconnect(this);
    m_runner->cancel();
}

void ResultCheck::onSoundProbed(const RunResult& result) {
    MeasuredResult measured;
    if (m_ffprobe.isEmpty()) {
        measured.outputMs = FfmpegDurationMs(result.errorText);
        measured.audioMs = measured.outputMs;
    } else {
        const ProbedLengths lengths = FfprobeLengths(QString::fromUtf8(m_runner->standardOutput()));
        measured.outputMs = lengths.formatMs;
        measured.audioMs = lengths.audioMs;
    }
    emit finished(measured);
}

} // namespace cq
