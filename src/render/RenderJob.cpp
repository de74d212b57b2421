#include "render/RenderJob.h"

#include "platform/FfmpegOutput.h"
#include "platform/TextFiles.h"
#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "platform/WavFormat.h"
#include "render/AviContents.h"
#include "render/MediaFileInfo.h"
#include "render/PieceCache.h"
#include "render/PieceScheduler.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QPromise>
#include <QSaveFile>
#include <QThread>
#include <QThreadPool>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace cq {

namespace {

constexpr int kPiecesShare = 60; // percent of the progress bar for the pieces

QString cancelledText() {
    return QStringLiteral("The render was cancelled.");
}

bool writeLfFile(const QString& fileSpec, const QString& text) {
    QSaveFile f(fileSpec);
    const QByteArray bytes = text.toUtf8();
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() && f.commit();
}

} // namespace

RenderInputs StudioRenderInputs(const AppPaths& paths, const StudioSettings& studio,
                                const QList<EventRow>& rows, const QString& voiceFile,
                                qint64 recordingMs, const QString& output) {
    RenderInputs in;
    in.rows = rows;
    in.recordingMs = recordingMs;
    in.voiceFile = voiceFile;
    in.workFolder = paths.gstrTempFilesDirectory;
    in.blackPicture = paths.blackPictureFileSpec;
    in.ffmpeg = LocateFfmpeg(paths.gstrFFMPEGFileSpec).path;
    in.gstrVideoRes = studio.gstrVideoRes;
    in.gstrFrameRate = studio.gstrFrameRate;
    in.keepVideoSound = studio.keepVideoSound;
    in.output = !output.isEmpty() ? output
                : rows.isEmpty()  ? paths.gstrFinalMixMP3FileSpec
                                  : paths.gstrFinalMixAVIFileSpec;
    return in;
}

QString LocateFfprobe(const AppPaths& paths) {
    // The same look-up as the installation check's, so that the check sees what the render uses.
    return LocateFfprobeBesideFfmpeg(paths.gstrFFMPEGFileSpec).path;
}

RenderJob::RenderJob(RenderInputs inputs, QString ffprobe, QString scriptFolder, QObject* parent)
    : QObject(parent), m_in(std::move(inputs)), m_workspace(m_in.workFolder),
      m_ffprobe(std::move(ffprobe)), m_scriptFolder(std::move(scriptFolder)),
      m_runner(new ToolRunner(this)) {
    qRegisterMetaType<cq::RenderReport>();
    m_runner->setKillGraceMilliseconds(500);
    m_parallelism = std::max(1, QThread::idealThreadCount());
}

RenderJob::~RenderJob() {
    // The runners, children of this job, stop their tools as they go.
    if (m_running && !m_plan.partialOutput.isEmpty())
        QFile::remove(m_plan.partialOutput);
}

QString RenderJob::scriptFile() const {
    return m_scriptFolder + QStringLiteral("/c-render%1-0.sh").arg(m_workspace.number());
}

void RenderJob::log(const QString& line) {
    m_log << QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss.zzz ")) + line;
}

void RenderJob::setProgress(int percent) {
    percent = std::clamp(percent, 0, 100);
    if (percent == m_lastPercent)
        return;
    m_lastPercent = percent;
    emit progressChanged(percent);
}

void RenderJob::start() {
    if (m_running)
        return;
    m_running = true;
    m_cancelling = false;
    m_clock.start();
    m_report = {};
    m_report.voiceMs = m_in.recordingMs;
    m_log.clear();
    m_lastPercent = -1;
    setProgress(0);
    log(QStringLiteral("Render of %1 events, voice \"%2\" (%3), size %4, into \"%5\"")
            .arg(m_in.rows.size())
            .arg(m_in.voiceFile, RenderLengthText(m_in.recordingMs), m_in.gstrVideoRes,
                 m_in.output));
    if (m_in.ffmpeg.isEmpty())
        return finish(RenderReport::Outcome::Failed,
                      QStringLiteral("ffmpeg is not installed. Install the Debian package "
                                     "\"ffmpeg\"."));
    const WavInfo voice = ReadWavInfo(m_in.voiceFile);
    if (!voice.ok())
        return finish(RenderReport::Outcome::Failed, voice.error);
    if (!takeWorkspace())
        return;
    for (const EventRow& row : m_in.rows)
        if (m_in.keepVideoSound && row.mediaType == u"Video" &&
            !m_videosToProbe.contains(row.fileSpec))
            m_videosToProbe << row.fileSpec;
    probeNextVideo();
}

bool RenderJob::takeWorkspace() {
    if (!m_workspace.acquire()) {
        finish(RenderReport::Outcome::Failed, m_workspace.problem());
        return false;
    }
    m_in.workFolder = m_workspace.folder();
    m_in.partialOutput = PartialOutputOf(
        m_in.output,
        QStringLiteral("%1-%2").arg(QCoreApplication::applicationPid()).arg(m_workspace.number()));
    QDir().mkpath(m_scriptFolder);
    QDir().mkpath(QFileInfo(m_in.output).absolutePath());
    log(QStringLiteral("work space \"%1\"").arg(m_in.workFolder));
    return true;
}

void RenderJob::probeNextVideo() {
    // Whether a video has sound is asked of ffmpeg here, in the job: a probe may take a while
    // and the window must not wait for it.
    if (m_videosToProbe.isEmpty())
        return startPieces();
    emit statusChanged(QStringLiteral("Looking for sound in the videos"));
    const QString video = m_videosToProbe.takeFirst();
    m_runner->disconnect(this);
    connect(m_runner, &ToolRunner::finished, this, [this, video](const RunResult& r) {
        if (m_cancelling)
            return finish(RenderReport::Outcome::Cancelled, cancelledText());
        // ffmpeg given only an input describes it on stderr and complains of no output.
        if (GetFileInfoVars(r.errorText).hasAudio())
            m_in.videosWithSound.insert(video);
        probeNextVideo();
    });
    m_runner->startProgram(m_in.ffmpeg, {QStringLiteral("-nostdin"), QStringLiteral("-hide_banner"),
                                         QStringLiteral("-i"), video});
}

void RenderJob::startPieces() {
    m_plan = BuildRenderPlan(m_in);
    if (!m_plan.ok())
        return finish(RenderReport::Outcome::Failed, m_plan.error);
    QFile::remove(m_plan.partialOutput);
    if (m_plan.audioOnly)
        return startMix();
    emit statusChanged(QStringLiteral("Rendering %1 pieces").arg(m_plan.segments.size()));
    m_pieces = new PieceScheduler(
        m_in, m_plan, m_scriptFolder + QStringLiteral("/c-render%1-").arg(m_workspace.number()),
        m_parallelism, this);
    connect(m_pieces, &PieceScheduler::logLine, this, &RenderJob::log);
    connect(m_pieces, &PieceScheduler::progress, this, [this](qint64 done, qint64 total) {
        setProgress(int(kPiecesShare * done / std::max<qint64>(1, total)));
    });
    connect(m_pieces, &PieceScheduler::failed, this,
            [this](const QString& why) { finish(RenderReport::Outcome::Failed, why); });
    connect(m_pieces, &PieceScheduler::cancelled, this,
            [this] { finish(RenderReport::Outcome::Cancelled, cancelledText()); });
    connect(m_pieces, &PieceScheduler::finished, this, [this] {
        m_report.reusedPieces = m_pieces->reusedPieces();
        m_report.failedItems = m_pieces->failedItems();
        setProgress(kPiecesShare);
        startMix();
    });
    m_pieces->start();
}

void RenderJob::startMix() {
    emit statusChanged(QStringLiteral("Mixing the video with the voice"));
    if (!m_plan.audioOnly && !writeLfFile(m_plan.joinListFile, m_plan.joinList))
        return finish(RenderReport::Outcome::Failed,
                      QStringLiteral("The list of pieces \"%1\" could not be written.")
                          .arg(m_plan.joinListFile));
    log(QStringLiteral("final: ") + m_plan.finalLine);
    m_runner->disconnect(this);
    connect(m_runner, &ToolRunner::outputLine, this, &RenderJob::onMixOutput);
    connect(m_runner, &ToolRunner::finished, this, [this](const RunResult& r) {
        if (m_cancelling)
            return finish(RenderReport::Outcome::Cancelled, cancelledText());
        if (!r.ok() || QFileInfo(m_plan.partialOutput).size() <= 0)
            return finish(
                RenderReport::Outcome::Failed,
                QStringLiteral("The video could not be mixed with the voice: %1")
                    .arg(r.errorText.trimmed().isEmpty()
                             ? QStringLiteral("ffmpeg ended with exit code %1").arg(r.exitCode)
                             : r.errorText.trimmed()));
        startMeasure();
    });
    m_runner->startScript(m_plan.finalLine, scriptFile());
}

void RenderJob::onMixOutput(const QString& line) {
    const qint64 ms = line.startsWith(u"out_time_us=") ? FfmpegProgressMs(line) : -1;
    if (ms < 0)
        return;
    const int base = m_plan.audioOnly ? 0 : kPiecesShare;
    setProgress(base + int((99 - base) * ms / std::max<qint64>(1, m_plan.targetMs)));
}

void RenderJob::startMeasure() {
    emit statusChanged(QStringLiteral("Checking the result"));
    if (!m_plan.audioOnly)
        return measureVideo();
    m_runner->disconnect(this);
    connect(m_runner, &ToolRunner::finished, this, &RenderJob::onSoundProbed);
    if (m_ffprobe.isEmpty()) {
        // Without ffprobe, ffmpeg's own description gives the container's length.
        m_runner->startProgram(m_in.ffmpeg,
                               {QStringLiteral("-nostdin"), QStringLiteral("-hide_banner"),
                                QStringLiteral("-i"), m_plan.partialOutput});
        return;
    }
    m_runner->startProgram(
        m_ffprobe, {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                    QStringLiteral("format=duration:stream=codec_type,duration"),
                    QStringLiteral("-of"), QStringLiteral("default=nw=1"), m_plan.partialOutput});
}

void RenderJob::measureVideo() {
    // The result's chunks are counted on a worker thread: a long message has tens of thousands.
    auto promise = std::make_shared<QPromise<AviContents>>();
    auto* watcher = new QFutureWatcher<AviContents>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (!m_running)
            return;
        if (m_cancelling)
            return finish(RenderReport::Outcome::Cancelled, cancelledText());
        const AviContents avi = watcher->result();
        if (!avi.complete)
            log(QStringLiteral("the result is not whole: ") + avi.problem);
        m_report.videoMs = avi.complete ? avi.durationMs("vids") : -1;
        m_report.audioMs = avi.complete ? avi.durationMs("auds") : -1;
        m_report.outputMs = std::max(m_report.videoMs, m_report.audioMs);
        judgeLengths();
    });
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, file = m_plan.partialOutput] {
        promise->start();
        promise->addResult(ReadAviContents(file));
        promise->finish();
    });
}

void RenderJob::onSoundProbed(const RunResult& result) {
    if (m_cancelling)
        return finish(RenderReport::Outcome::Cancelled, cancelledText());
    if (m_ffprobe.isEmpty()) {
        m_report.outputMs = FfmpegDurationMs(result.errorText);
        m_report.audioMs = m_report.outputMs;
    } else {
        const ProbedLengths lengths = FfprobeLengths(QString::fromUtf8(m_runner->standardOutput()));
        m_report.outputMs = lengths.formatMs;
        m_report.audioMs = lengths.audioMs;
    }
    judgeLengths();
}

void RenderJob::judgeLengths() {
    auto within = [&](qint64 ms) {
        return ms >= 0 && std::llabs(ms - m_in.recordingMs) <= kToleranceMs;
    };
    m_report.lengthOk = within(m_report.outputMs) && within(m_report.audioMs) &&
                        (m_plan.audioOnly || within(m_report.videoMs));
    log(QStringLiteral("measured: voice %1, result %2, video %3, sound %4")
            .arg(RenderLengthText(m_in.recordingMs), RenderLengthText(m_report.outputMs),
                 RenderLengthText(m_report.videoMs), RenderLengthText(m_report.audioMs)));
    if (!m_report.lengthOk)
        return finish(RenderReport::Outcome::Failed, LengthMismatchMessage(m_report, m_in.output));
    publish();
}

void RenderJob::publish() {
    // rename(2) replaces the previous result in one step: a reader sees the old or the new.
    if (std::rename(QFile::encodeName(m_plan.partialOutput).constData(),
                    QFile::encodeName(m_in.output).constData()) != 0)
        return finish(RenderReport::Outcome::Failed,
                      QStringLiteral("The result could not be moved to \"%1\": %2")
                          .arg(m_in.output, QString::fromLocal8Bit(std::strerror(errno))));
    m_report.output = m_in.output;
    if (!m_plan.audioOnly) {
        m_report.removedOldFiles =
            PieceCache(m_in.workFolder).removeAllBut(m_plan.distinctPieces());
        log(QStringLiteral("%1 files of older renders removed").arg(m_report.removedOldFiles));
    }
    finish(RenderReport::Outcome::Rendered,
           FailedItemsMessage(m_report.failedItems,
                              m_pieces ? m_pieces->failureReasons() : QStringList{}));
}

void RenderJob::cancel() {
    if (!m_running || m_cancelling)
        return;
    m_cancelling = true;
    log(QStringLiteral("cancel requested"));
    if (m_pieces && m_pieces->isRunning())
        return m_pieces->cancel();
    if (m_runner->isRunning())
        return m_runner->cancel();
    finish(RenderReport::Outcome::Cancelled, cancelledText());
}

QString RenderJob::writeLog() {
    const QString folder = m_workspace.isHeld() ? m_in.workFolder : QString();
    if (folder.isEmpty())
        return {};
    const QString file = folder + QStringLiteral("/RenderLog.txt");
    return SaveTextToFile(m_log.join(QStringLiteral("\r\n")), file) ? file : QString();
}

void RenderJob::finish(RenderReport::Outcome outcome, const QString& message) {
    if (!m_running)
        return;
    m_running = false;
    m_runner->disconnect(this);
    if (m_runner->isRunning())
        m_runner->cancel();
    if (m_pieces) {
        m_pieces->disconnect(this);
        m_pieces->cancel();
    }
    if (!m_plan.partialOutput.isEmpty())
        QFile::remove(m_plan.partialOutput);
    QFile::remove(scriptFile());
    m_report.outcome = outcome;
    m_report.message = message;
    m_report.elapsedMs = m_clock.elapsed();
    log(QStringLiteral("%1 after %2: %3")
            .arg(outcome == RenderReport::Outcome::Rendered    ? QStringLiteral("rendered")
                 : outcome == RenderReport::Outcome::Cancelled ? QStringLiteral("cancelled")
                                                               : QStringLiteral("failed"),
                 RenderLengthText(m_report.elapsedMs),
                 message.isEmpty() ? QStringLiteral("ok") : message));
    m_report.logFile = writeLog();
    m_workspace.release();
    if (outcome == RenderReport::Outcome::Rendered)
        setProgress(100);
    emit finished(m_report);
}

RenderReport RenderJob::runToEnd() {
    QEventLoop loop;
    connect(this, &RenderJob::finished, &loop, &QEventLoop::quit);
    start();
    if (m_running)
        loop.exec();
    return m_report;
}

} // namespace cq
