#include "render/RenderJob.h"

#include "platform/TextFiles.h"
#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "render/MediaFileInfo.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"

#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <QTimer>

#include <cmath>
#include <cstdio>

namespace cq {

namespace {

constexpr int kSegmentsShare = 55; // percent of the progress bar for the pieces
constexpr int kJoinShare = 5;

bool pieceMade(const QString& piece) {
    const QFileInfo fi(piece);
    return fi.exists() && fi.size() > 0;
}

QString msText(qint64 ms) {
    return ms < 0 ? QStringLiteral("unknown") : QString::number(double(ms) / 1000.0, 'f', 3) + u's';
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
    if (studio.keepVideoSound) {
        // A video without a sound track has nothing to mix, and would stop the mix.
        for (const EventRow& row : rows)
            if (row.mediaType == u"Video" && !in.videosWithSound.contains(row.fileSpec) &&
                GetFileInfoVars(GetMediaFileInfoFromFFMPEG(paths, row.fileSpec)).hasAudio())
                in.videosWithSound.insert(row.fileSpec);
    }
    in.output = !output.isEmpty() ? output
                : rows.isEmpty()  ? paths.gstrFinalMixMP3FileSpec
                                  : paths.gstrFinalMixAVIFileSpec;
    return in;
}

QString LocateFfprobe(const AppPaths& paths) {
    return LocateTool(paths.appFolder + QStringLiteral("/System/ffprobe"),
                      QStringLiteral("ffprobe"), QStringLiteral("ffmpeg"))
        .path;
}

RenderJob::RenderJob(RenderInputs inputs, QString ffprobe, QString scriptFolder, QObject* parent)
    : QObject(parent), m_in(std::move(inputs)), m_ffprobe(std::move(ffprobe)),
      m_scriptFolder(std::move(scriptFolder)) {
    qRegisterMetaType<cq::RenderReport>();
    m_parallelism = std::max(1, QThread::idealThreadCount());
}

RenderJob::~RenderJob() = default;

QString RenderJob::logFile() const {
    return m_in.workFolder + QStringLiteral("/RenderLog.txt");
}

QString RenderJob::scriptFile(int runnerIndex) const {
    return m_scriptFolder + QStringLiteral("/c-render%1.sh").arg(runnerIndex + 1);
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
    m_report.logFile = logFile();
    m_report.voiceMs = m_in.recordingMs;
    m_log.clear();
    m_lastPercent = -1;
    setProgress(0);
    log(QStringLiteral("Render of %1 events, voice \"%2\" (%3), size %4, into \"%5\"")
            .arg(m_in.rows.size())
            .arg(m_in.voiceFile, msText(m_in.recordingMs), m_in.gstrVideoRes, m_in.output));
    if (m_in.ffmpeg.isEmpty())
        return finish(RenderReport::Outcome::Failed,
                      QStringLiteral("ffmpeg is not installed. Install the Debian package "
                                     "\"ffmpeg\"."));
    if (!QFileInfo::exists(m_in.voiceFile))
        return finish(
            RenderReport::Outcome::Failed,
            QStringLiteral("The recorded voice \"%1\" does not exist.").arg(m_in.voiceFile));
    m_plan = BuildRenderPlan(m_in);
    if (!m_plan.ok())
        return finish(RenderReport::Outcome::Failed, m_plan.error);
    QDir().mkpath(m_in.workFolder);
    QDir().mkpath(m_scriptFolder);
    QFile::remove(m_plan.partialOutput);

    for (int i = 0; i < m_parallelism; ++i) {
        auto* runner = new ToolRunner(this);
        runner->setKillGraceMilliseconds(500);
        m_runners << runner;
        m_runnerWork << QList<int>{};
        auto* watchdog = new QTimer(this);
        watchdog->setSingleShot(true);
        connect(watchdog, &QTimer::timeout, this, [this, runner] {
            log(QStringLiteral("a piece run did not end in time and was stopped"));
            runner->cancel();
        });
        m_watchdogs << watchdog;
        m_runnerOnBlack << false;
    }
    if (m_plan.audioOnly)
        startFinal();
    else
        startSegments();
}

QString RenderJob::reuseKey(const RenderSegment& s) const {
    // The line names the source, the length in frames and every setting; the source's size and
    // time tell a file that was changed under the same name.
    const QFileInfo fi(s.source);
    return s.line + u'\n' + QString::number(fi.size()) + u' ' +
           QString::number(fi.lastModified().toMSecsSinceEpoch());
}

void RenderJob::startSegments() {
    m_phase = Phase::Segments;
    emit statusChanged(QStringLiteral("Rendering %1 pieces").arg(m_plan.segments.size()));
    m_framesDone = 0;
    m_queue.clear();
    QList<int> needed;
    for (int i = 0; i < m_plan.segments.size(); ++i) {
        const RenderSegment& s = m_plan.segments[i];
        if (pieceMade(s.piece) &&
            ReadFileToString(keyFileOf(s)) == reuseKey(s) + QStringLiteral("\r\n")) {
            log(QStringLiteral("piece %1 (%2) unchanged, reused").arg(s.number).arg(s.source));
            ++m_report.reusedPieces;
            m_framesDone += s.frames;
            continue;
        }
        QFile::remove(keyFileOf(s));
        QFile::remove(s.piece);
        needed << i;
    }
    // Still pictures share one ffmpeg run, whose start-up costs more than a small piece; every
    // core gets a run, and no run grows so long that the progress stands still. A video runs
    // alone: ffmpeg 5.1 spins without end when a video input shares a run with looped stills.
    QList<int> stills;
    for (int i : needed) {
        if (m_plan.segments[i].kind == u"Video")
            m_queue << QList<int>{i};
        else
            stills << i;
    }
    const qsizetype runs = std::max<qsizetype>(1, m_runners.size());
    const qsizetype batch =
        std::clamp<qsizetype>((stills.size() + runs - 1) / runs, 1, kMaxPiecesPerRun);
    for (qsizetype i = 0; i < stills.size(); i += batch)
        m_queue << stills.mid(i, batch);
    for (int i = 0; i < m_runners.size(); ++i)
        startNextSegment(i);
}

void RenderJob::startNextSegment(int runnerIndex) {
    if (!m_queue.isEmpty()) {
        const QList<int> work = m_queue.takeFirst();
        m_runnerWork[runnerIndex] = work;
        m_runnerOnBlack[runnerIndex] = false;
        QList<RenderSegment> segments;
        for (int i : work)
            segments << m_plan.segments[i];
        const QString line = work.size() == 1 ? segments.first().line : BatchLine(m_in, segments);
        ToolRunner* runner = m_runners[runnerIndex];
        runner->disconnect(this);
        connect(runner, &ToolRunner::finished, this,
                [this, runnerIndex](const RunResult& r) { segmentFinished(runnerIndex, r); });
        QStringList numbers;
        for (const RenderSegment& s : segments)
            numbers << QString::number(s.number);
        log(QStringLiteral("pieces %1: %2").arg(numbers.join(u','), line));
        // A tool that never ends must not hold the render: far past any honest run time, the
        // run is stopped and its pieces count as failed.
        qint64 frames = 0;
        for (const RenderSegment& seg : segments)
            frames += seg.frames;
        m_watchdogs[runnerIndex]->start(int(std::min<qint64>(60000 + frames * 50, 3600000)));
        runner->startScript(line, scriptFile(runnerIndex));
        return;
    }
    m_runnerWork[runnerIndex].clear();
    if (std::all_of(m_runnerWork.begin(), m_runnerWork.end(),
                    [](const QList<int>& w) { return w.isEmpty(); })) {
        setProgress(kSegmentsShare);
        startJoin();
    }
}

void RenderJob::segmentFinished(int runnerIndex, const RunResult& result) {
    m_watchdogs[runnerIndex]->stop();
    const QList<int> work = m_runnerWork[runnerIndex];
    if (work.isEmpty())
        return;
    if (m_cancelling) {
        m_runnerWork[runnerIndex].clear();
        if (std::none_of(m_runners.begin(), m_runners.end(),
                         [](ToolRunner* r) { return r->isRunning(); }))
            finish(RenderReport::Outcome::Cancelled, QStringLiteral("The render was cancelled."));
        return;
    }
    QList<int> missing;
    for (int i : work) {
        const RenderSegment& s = m_plan.segments[i];
        if (result.ok() && pieceMade(s.piece)) {
            if (!m_runnerOnBlack[runnerIndex])
                SaveTextToFile(reuseKey(s), keyFileOf(s));
            m_framesDone += s.frames;
        } else {
            missing << i;
        }
    }
    if (!missing.isEmpty()) {
        log(QStringLiteral("run failed: %1").arg(result.errorText.trimmed()));
        if (work.size() > 1) {
            // One unreadable file fails the whole run: the pieces go again one by one, so
            // only that file's piece is lost.
            for (int i : missing)
                m_queue.prepend({i});
        } else {
            const RenderSegment& s = m_plan.segments[missing.first()];
            if (m_runnerOnBlack[runnerIndex] || s.kind == u"Black")
                return finish(RenderReport::Outcome::Failed,
                              QStringLiteral("Even black could not be rendered from \"%1\": %2")
                                  .arg(m_in.blackPicture, result.errorText.trimmed()));
            // The item shows black for its time, so everything after it keeps its place.
            m_report.failedItems << s.source;
            m_runnerOnBlack[runnerIndex] = true;
            log(QStringLiteral("piece %1 becomes black: %2").arg(s.number).arg(s.blackLine));
            m_watchdogs[runnerIndex]->start(int(std::min<qint64>(60000 + s.frames * 50, 3600000)));
            m_runners[runnerIndex]->startScript(s.blackLine, scriptFile(runnerIndex));
            return;
        }
    }
    setProgress(int(kSegmentsShare * m_framesDone / std::max<qint64>(1, m_plan.totalFrames)));
    startNextSegment(runnerIndex);
}

QString RenderJob::keyFileOf(const RenderSegment& s) const {
    return m_in.workFolder + QStringLiteral("/%1.key").arg(s.number);
}

void RenderJob::startJoin() {
    m_phase = Phase::Join;
    emit statusChanged(QStringLiteral("Joining the pieces"));
    QFile::remove(m_plan.joinedFile);
    const QString script = m_plan.joinLines.join(u'\n');
    log(QStringLiteral("join:\n") + script);
    ToolRunner* runner = m_runners.first();
    runner->disconnect(this);
    connect(runner, &ToolRunner::finished, this, [this](const RunResult& r) {
        if (m_cancelling)
            return finish(RenderReport::Outcome::Cancelled,
                          QStringLiteral("The render was cancelled."));
        if (!r.ok() || !pieceMade(m_plan.joinedFile))
            return finish(RenderReport::Outcome::Failed,
                          QStringLiteral("The pieces could not be joined into \"%1\": %2")
                              .arg(m_plan.joinedFile, r.errorText.trimmed()));
        setProgress(kSegmentsShare + kJoinShare);
        startFinal();
    });
    runner->startScript(script, scriptFile(0));
}

void RenderJob::startFinal() {
    m_phase = Phase::Final;
    emit statusChanged(QStringLiteral("Mixing the video with the voice"));
    log(QStringLiteral("final: ") + m_plan.finalLine);
    ToolRunner* runner = m_runners.first();
    runner->disconnect(this);
    connect(runner, &ToolRunner::outputLine, this, &RenderJob::onFinalOutput);
    connect(runner, &ToolRunner::finished, this, [this](const RunResult& r) {
        if (m_cancelling)
            return finish(RenderReport::Outcome::Cancelled,
                          QStringLiteral("The render was cancelled."));
        if (!r.ok() || !pieceMade(m_plan.partialOutput))
            return finish(RenderReport::Outcome::Failed,
                          QStringLiteral("The video could not be mixed with the voice: %1")
                              .arg(r.errorText.trimmed()));
        startMeasure();
    });
    runner->startScript(m_plan.finalLine, scriptFile(0));
}

void RenderJob::onFinalOutput(const QString& line) {
    // "-progress" reports the written length as out_time_us (and, in microseconds too,
    // out_time_ms).
    if (!line.startsWith(u"out_time_us="))
        return;
    const qint64 us = line.mid(12).toLongLong();
    const int base = m_plan.audioOnly ? 0 : kSegmentsShare + kJoinShare;
    const int share = 99 - base;
    setProgress(base + int(share * (us / 1000) / std::max<qint64>(1, m_plan.targetMs)));
}

void RenderJob::startMeasure() {
    m_phase = Phase::Measure;
    emit statusChanged(QStringLiteral("Checking the result"));
    ToolRunner* runner = m_runners.first();
    runner->disconnect(this);
    connect(runner, &ToolRunner::finished, this, &RenderJob::onMeasured);
    if (m_ffprobe.isEmpty()) {
        onMeasured({});
        return;
    }
    runner->startProgram(
        m_ffprobe, {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                    QStringLiteral("format=duration:stream=codec_type,duration"),
                    QStringLiteral("-of"), QStringLiteral("default=nw=1"), m_plan.partialOutput});
}

void RenderJob::onMeasured(const RunResult& result) {
    if (m_cancelling)
        return finish(RenderReport::Outcome::Cancelled,
                      QStringLiteral("The render was cancelled."));
    // Streams come first, then the container: "codec_type=video", "duration=10.010000", ...
    QString type;
    const QStringList lines = QString::fromUtf8(m_runners.first()->standardOutput()).split(u'\n');
    for (const QString& l : lines) {
        if (l.startsWith(u"codec_type=")) {
            type = l.mid(11).trimmed();
        } else if (l.startsWith(u"duration=")) {
            bool ok = false;
            const double s = l.mid(9).toDouble(&ok);
            const qint64 ms = ok ? std::llround(s * 1000.0) : -1;
            if (type == u"video")
                m_report.videoMs = ms;
            else if (type == u"audio")
                m_report.audioMs = ms;
            else
                m_report.outputMs = ms;
            type = QStringLiteral("format");
        }
    }
    Q_UNUSED(result);
    auto within = [&](qint64 ms) {
        return ms >= 0 && std::llabs(ms - m_in.recordingMs) <= kToleranceMs;
    };
    m_report.lengthOk = within(m_report.outputMs) && within(m_report.audioMs) &&
                        (m_plan.audioOnly || within(m_report.videoMs));
    log(QStringLiteral("measured: voice %1, result %2, video %3, sound %4")
            .arg(msText(m_in.recordingMs), msText(m_report.outputMs), msText(m_report.videoMs),
                 msText(m_report.audioMs)));

    // Only a complete result replaces the previous one.
    if (std::rename(QFile::encodeName(m_plan.partialOutput).constData(),
                    QFile::encodeName(m_in.output).constData()) != 0)
        return finish(RenderReport::Outcome::Failed,
                      QStringLiteral("The result could not be moved to \"%1\".").arg(m_in.output));
    m_report.output = m_in.output;
    QString message;
    if (!m_report.lengthOk)
        message = QStringLiteral("The rendered video is %1 long but the voice is %2: sound and "
                                 "pictures may drift apart. See the render log \"%3\".")
                      .arg(msText(m_report.outputMs), msText(m_in.recordingMs), logFile());
    if (!m_report.failedItems.isEmpty())
        message += (message.isEmpty() ? QString() : QStringLiteral("\n")) +
                   QStringLiteral("These files could not be rendered and show black for their "
                                  "time: \"%1\".")
                       .arg(m_report.failedItems.join(QStringLiteral("\", \"")));
    finish(RenderReport::Outcome::Rendered, message);
}

void RenderJob::cancel() {
    if (!m_running || m_cancelling)
        return;
    m_cancelling = true;
    log(QStringLiteral("cancel requested"));
    bool anyRunning = false;
    for (ToolRunner* r : m_runners) {
        if (r->isRunning()) {
            anyRunning = true;
            r->cancel();
        }
    }
    if (!anyRunning)
        finish(RenderReport::Outcome::Cancelled, QStringLiteral("The render was cancelled."));
}

void RenderJob::finish(RenderReport::Outcome outcome, const QString& message) {
    if (!m_running)
        return;
    for (QTimer* w : m_watchdogs)
        w->stop();
    for (ToolRunner* r : m_runners) {
        r->disconnect(this);
        if (r->isRunning())
            r->cancel();
    }
    if (outcome != RenderReport::Outcome::Rendered && !m_plan.partialOutput.isEmpty())
        QFile::remove(m_plan.partialOutput);
    for (int i = 0; i < m_runners.size(); ++i)
        QFile::remove(scriptFile(i));
    m_phase = Phase::Done;
    m_running = false;
    m_report.outcome = outcome;
    m_report.message = message;
    m_report.elapsedMs = m_clock.elapsed();
    log(QStringLiteral("%1 after %2: %3")
            .arg(outcome == RenderReport::Outcome::Rendered    ? QStringLiteral("rendered")
                 : outcome == RenderReport::Outcome::Cancelled ? QStringLiteral("cancelled")
                                                               : QStringLiteral("failed"),
                 msText(m_report.elapsedMs), message.isEmpty() ? QStringLiteral("ok") : message));
    SaveTextToFile(m_log.join(QStringLiteral("\r\n")), logFile());
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
