#include "render/RenderJob.h"

#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "render/CaptionFilesBeside.h"
#include "render/MixStep.h"
#include "render/OutputGuard.h"
#include "render/PieceCache.h"
#include "render/PieceScheduler.h"
#include "render/ResultCheck.h"
#include "render/SoundProbe.h"
#include "render/VoiceMeasure.h"
#include "render/VoiceSound.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <utility>

namespace cq {

namespace {

// The steps of every render, in order. Each starts when the one before it has ended well; any
// of them may end the render instead, as failed or cancelled. A step with nothing to do (no
// video to probe, no pieces for a recording without events) ends at once.
constexpr std::array kSteps{RenderJob::Step::Probe,  RenderJob::Step::Plan,
                            RenderJob::Step::Pieces, RenderJob::Step::Mix,
                            RenderJob::Step::Verify, RenderJob::Step::Publish};

constexpr int kPiecesShare = 60; // percent of the progress bar for the pieces
// The mix goes up to here: the last percent waits until the result is checked and in place.
constexpr int kMixedPercent = 99;

QString cancelledText() {
    return QStringLiteral("The render was cancelled.");
}

QString outcomeWord(JobEnd::Outcome outcome) {
    switch (outcome) {
    case JobEnd::Outcome::Done:
        return QStringLiteral("rendered");
    case JobEnd::Outcome::Cancelled:
        return QStringLiteral("cancelled");
    case JobEnd::Outcome::Failed:
        break;
    }
    return QStringLiteral("failed");
}

} // namespace

RenderJob::RenderJob(RenderInputs inputs, ToolPool& pool, QObject* parent)
    : Job(parent), m_in(std::move(inputs)), m_pool(pool), m_workspace(m_in.workFolder) {
    qRegisterMetaType<cq::RenderReport>();
}

RenderJob::~RenderJob() {
    // The steps stop their tools as they go, before the inputs and the plan they read.
    delete m_probe;
    delete m_pieces;
    delete m_voice;
    delete m_sound;
    delete m_mix;
    delete m_check;
    if (m_running && !m_space.partialOutput.isEmpty())
        QFile::remove(m_space.partialOutput);
}

void RenderJob::log(const QString& line) {
    m_log << QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss.zzz ")) + line;
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
    restartProgress();
    log(QStringLiteral("Render of %1 events, voice \"%2\" (%3), size %4x%5 at %6, into \"%7\"")
            .arg(m_in.rows.size())
            .arg(m_in.voiceFile, RenderLengthText(m_in.recordingMs))
            .arg(m_in.frameSize.width())
            .arg(m_in.frameSize.height())
            .arg(m_in.frameRate.ffmpegText(), m_in.output));
    if (prepare())
        runStep(kSteps.front());
}

bool RenderJob::prepare() {
    if (!m_in.ffmpeg.found()) {
        finish(JobEnd::failed(m_in.ffmpeg.missingMessage()));
        return false;
    }
    const WavInfo voice = ReadWavInfo(m_in.voiceFile);
    if (!voice.ok()) {
        finish(JobEnd::failed(voice.error));
        return false;
    }
    const QString unsafe = RenderOutputProblem(m_in);
    if (!unsafe.isEmpty()) {
        finish(JobEnd::failed(unsafe));
        return false;
    }
    m_voiceOptions = m_in.voice;
    m_voiceOptions.mixDown = voice.channels > 2;
    m_voiceFileMs = voice.durationMs;
    if (!m_workspace.acquire()) {
        finish(JobEnd::failed(m_workspace.problem()));
        return false;
    }
    const int n = m_workspace.number();
    m_space.folder = m_workspace.folder();
    m_space.partialOutput = PartialOutputOf(
        m_in.output, QStringLiteral("%1-%2").arg(QCoreApplication::applicationPid()).arg(n));
    QDir().mkpath(QFileInfo(m_in.output).absolutePath());
    log(QStringLiteral("work space \"%1\"").arg(m_space.folder));
    return true;
}

void RenderJob::runStep(Step step) {
    m_step = step;
    emit stepStarted(step);
    switch (step) {
    case Step::Probe:
        return probe();
    case Step::Plan:
        return makePlan();
    case Step::Pieces:
        return makePieces();
    case Step::Mix:
        return mix();
    case Step::Verify:
        return verify();
    case Step::Publish:
        return publish();
    }
}

void RenderJob::stepDone() {
    if (!m_running)
        return;
    if (m_cancelling)
        return finish(JobEnd::cancelled(cancelledText()));
    const auto at = std::find(kSteps.begin(), kSteps.end(), m_step);
    if (at + 1 != kSteps.end())
        runStep(*(at + 1));
}

void RenderJob::probe() {
    // What the videos hold is asked of ffmpeg here, in the job: a probe may take a while and the
    // window must not wait for it.
    QStringList videos;
    for (const TimelineEvent& row : m_in.rows)
        if (SegmentKindOfMediaType(row.kind) == SegmentKind::Video && !videos.contains(row.file))
            videos << row.file;
    if (videos.isEmpty())
        return stepDone();
    emit statusChanged(QStringLiteral("Looking into the videos"));
    m_probe = new SoundProbe(m_in.ffmpeg.path, videos, this);
    connect(m_probe, &SoundProbe::finished, this,
            [this](const QHash<QString, MediaFileInfo>& found) {
                for (auto it = found.begin(); it != found.end(); ++it) {
                    if (m_in.keepVideoSound && it->hasAudio)
                        m_videosWithSound.insert(it.key());
                    if (it->durationMs >= 0)
                        m_videoLengths.insert(it.key(), it->durationMs);
                }
                stepDone();
            });
    m_probe->start();
}

void RenderJob::makePlan() {
    m_plan = BuildRenderPlan(m_in, m_space, m_videosWithSound, m_videoLengths);
    if (!m_plan.ok())
        return fail(m_plan.error);
    QFile::remove(m_space.partialOutput);
    prepareVoice();
    stepDone();
}

// The measurement goes to the pool ahead of the pieces and runs beside them, and the voice's
// sound is made as soon as its treatment is known: by the time the pieces are made, the join
// rarely has to wait for either.
void RenderJob::prepareVoice() {
    if (!m_voiceOptions.even && !m_voiceOptions.reduceNoise)
        return encodeVoice();
    m_voice = new VoiceMeasure(m_in.ffmpeg.path, m_in.voiceFile, m_voiceOptions, m_space.folder,
                               m_pool, this);
    connect(m_voice, &VoiceMeasure::logLine, this, &RenderJob::log);
    connect(m_voice, &VoiceMeasure::ended, this, [this](const JobEnd& end) {
        if (end.isCancelled())
            return; // the render is ending
        if (end.isFailed())
            log(QStringLiteral("the voice could not be measured; its level stays as recorded: ") +
                end.message);
        encodeVoice();
        mixIfWaiting();
    });
    m_voice->start();
}

std::optional<VoiceTreatment> RenderJob::voiceTreatment() const {
    if (m_voice && m_voice->lastEnd().isDone())
        return m_voice->treatment();
    return std::nullopt;
}

// A video's own sound under the voice is mixed by the join, which then encodes the sound itself.
void RenderJob::encodeVoice() {
    if (m_plan.audioOnly || MixesVideoSound(m_plan, m_videosWithSound))
        return;
    m_sound = new VoiceSound(m_in.ffmpeg.path, m_in.voiceFile, m_voiceFileMs,
                             VoiceFilter(m_voiceOptions, voiceTreatment()), *m_in.container,
                             m_space.folder, m_pool, this);
    connect(m_sound, &VoiceSound::logLine, this, &RenderJob::log);
    connect(m_sound, &VoiceSound::finished, this, [this] {
        // The join would write into the same full disk.
        if (!m_sound->lackOfSpace().isEmpty())
            return fail(m_sound->lackOfSpace());
        if (!m_sound->problem().isEmpty())
            log(QStringLiteral("the voice's sound could not be made; the join encodes it: ") +
                m_sound->problem());
        mixIfWaiting();
    });
    m_sound->start();
}

bool RenderJob::voiceBusy() const {
    return (m_voice && m_voice->isRunning()) || (m_sound && m_sound->isRunning());
}

void RenderJob::mixIfWaiting() {
    if (m_mixWaitsForVoice && !voiceBusy()) {
        m_mixWaitsForVoice = false;
        startMix();
    }
}

void RenderJob::makePieces() {
    if (m_plan.audioOnly)
        return stepDone();
    emit statusChanged(QStringLiteral("Rendering %1 pieces").arg(m_plan.segments.size()));
    m_pieces = new PieceScheduler(m_in, m_plan, m_space, m_pool, this);
    connect(m_pieces, &PieceScheduler::logLine, this, &RenderJob::log);
    connect(m_pieces, &PieceScheduler::progress, this, [this](qint64 done, qint64 total) {
        setProgress(int(kPiecesShare * done / std::max<qint64>(1, total)));
    });
    connect(m_pieces, &PieceScheduler::failed, this, &RenderJob::fail);
    connect(m_pieces, &PieceScheduler::cancelled, this,
            [this] { finish(JobEnd::cancelled(cancelledText())); });
    connect(m_pieces, &PieceScheduler::finished, this, [this] {
        m_report.reusedPieces = m_pieces->reusedPieces();
        m_report.failedItems = m_pieces->failedItems();
        setProgress(kPiecesShare);
        stepDone();
    });
    m_pieces->start();
}

void RenderJob::mix() {
    if (!m_plan.audioOnly && !WriteWholeFile(m_plan.joinList.toUtf8(), m_plan.joinListFile))
        return fail(QStringLiteral("The list of pieces \"%1\" could not be written.")
                        .arg(m_plan.joinListFile));
    if (!m_plan.captionTrackFile.isEmpty() &&
        !WriteWholeFile(m_plan.captionTrack, m_plan.captionTrackFile))
        return fail(QStringLiteral("The captions \"%1\" could not be written.")
                        .arg(m_plan.captionTrackFile));
    if (voiceBusy()) {
        m_mixWaitsForVoice = true;
        return emit statusChanged(QStringLiteral("Preparing the voice"));
    }
    startMix();
}

void RenderJob::startMix() {
    emit statusChanged(QStringLiteral("Mixing the video with the voice"));
    m_report.voiceLevelReused = m_voice && m_voice->reused();
    m_plan.finalCommand = m_sound && !m_sound->file().isEmpty()
                              ? CopyJoinCommand(m_in, m_plan, m_sound->file())
                              : FinalMixCommand(m_in, m_plan, m_videosWithSound,
                                                VoiceFilter(m_voiceOptions, voiceTreatment()));
    log(QStringLiteral("final: ") + m_plan.finalCommand.commandLine());
    m_mix = new MixStep(m_plan.finalCommand, m_space.partialOutput, this);
    connect(m_mix, &MixStep::progressed, this, [this](qint64 ms) {
        const int base = m_plan.audioOnly ? 0 : kPiecesShare;
        setProgress(base + int((kMixedPercent - base) * ms / std::max<qint64>(1, m_plan.targetMs)));
    });
    connect(m_mix, &MixStep::finished, this, [this](const QString& problem) {
        if (!problem.isEmpty() && !m_cancelling)
            return fail(problem);
        stepDone();
    });
    m_mix->start();
}

void RenderJob::verify() {
    emit statusChanged(QStringLiteral("Checking the result"));
    m_check = new ResultCheck(m_space.partialOutput, m_in.container, m_in.ffmpeg.path, m_in.ffprobe,
                              this);
    connect(m_check, &ResultCheck::finished, this, &RenderJob::judge);
    if (m_plan.audioOnly)
        m_check->measureSound();
    else
        m_check->measureVideo();
}

void RenderJob::judge(const MeasuredResult& measured) {
    if (!measured.problem.isEmpty())
        log(QStringLiteral("the result is not whole: ") + measured.problem);
    m_report.outputMs = measured.outputMs;
    m_report.videoMs = measured.videoMs;
    m_report.audioMs = measured.audioMs;
    auto within = [&](qint64 ms) {
        return ms >= 0 && std::llabs(ms - m_in.recordingMs) <= kToleranceMs;
    };
    m_report.lengthOk = within(m_report.outputMs) && within(m_report.audioMs) &&
                        (m_plan.audioOnly || within(m_report.videoMs));
    log(QStringLiteral("measured: voice %1, result %2, video %3, sound %4")
            .arg(RenderLengthText(m_in.recordingMs), RenderLengthText(m_report.outputMs),
                 RenderLengthText(m_report.videoMs), RenderLengthText(m_report.audioMs)));
    if (!m_report.lengthOk)
        return fail(LengthMismatchMessage(m_report, m_in.output));
    stepDone();
}

void RenderJob::publish() {
    CaptionFilesBeside captions(m_in.output, m_space.partialOutput, m_in.writtenFilesRecord);
    const QString notStaged = m_in.writeCaptions ? captions.stage(m_in.captions) : QString();
    if (!notStaged.isEmpty())
        return fail(notStaged);
    // rename(2) replaces the previous result in one step: a reader sees the old or the new.
    if (std::rename(QFile::encodeName(m_space.partialOutput).constData(),
                    QFile::encodeName(m_in.output).constData()) != 0)
        return fail(QStringLiteral("The result could not be moved to \"%1\": %2")
                        .arg(m_in.output, QString::fromLocal8Bit(std::strerror(errno))));
    m_report.output = m_in.output;
    const QString notPublished = captions.publish();
    if (!notPublished.isEmpty())
        log(notPublished);
    if (!m_plan.audioOnly) {
        m_report.removedOldFiles =
            PieceCache(m_space.folder, *m_in.container).removeAllBut(m_plan.distinctPieces());
        log(QStringLiteral("%1 files of older renders removed").arg(m_report.removedOldFiles));
    }
    const QString failed = FailedItemsMessage(
        m_report.failedItems, m_pieces ? m_pieces->failureReasons() : QStringList{});
    QStringList told = QStringList{failed, notPublished} + m_in.captionNotes;
    told.removeAll(QString());
    finish(JobEnd::done(told.join(u'\n')));
}

void RenderJob::cancel() {
    if (!m_running || m_cancelling)
        return;
    m_cancelling = true;
    log(QStringLiteral("cancel requested"));
    // The pieces' runs end first, so that no half-written piece stays behind.
    if (m_pieces && m_pieces->isRunning())
        return m_pieces->cancel();
    stopSteps();
    // The end is reported from the event loop, as every other end of a step is: whoever cancels
    // learns of it by ended, never from inside its own call.
    QMetaObject::invokeMethod(
        this, [this] { finish(JobEnd::cancelled(cancelledText())); }, Qt::QueuedConnection);
}

void RenderJob::fail(const QString& message) {
    finish(m_cancelling ? JobEnd::cancelled(cancelledText()) : JobEnd::failed(message));
}

void RenderJob::stopSteps() {
    if (m_probe)
        m_probe->cancel();
    if (m_voice)
        m_voice->cancel();
    if (m_sound)
        m_sound->cancel();
    if (m_pieces) {
        m_pieces->disconnect(this);
        m_pieces->cancel();
    }
    if (m_mix)
        m_mix->cancel();
    if (m_check)
        m_check->cancel();
}

QString RenderJob::writeLog() {
    if (!m_workspace.isHeld())
        return {};
    const QString file = m_space.folder + QStringLiteral("/RenderLog.txt");
    return SaveTextToFile(m_log.join(QStringLiteral("\r\n")), file) ? file : QString();
}

void RenderJob::finish(const JobEnd& end) {
    if (!m_running)
        return;
    m_running = false;
    stopSteps();
    if (!m_space.partialOutput.isEmpty())
        QFile::remove(m_space.partialOutput);
    // A kept sound damaged since it was made would fail every later join: the next render makes
    // it again.
    if (end.isFailed() && m_sound && (m_step == Step::Mix || m_step == Step::Verify))
        m_sound->discard();
    static_cast<JobEnd&>(m_report) = end;
    m_report.elapsedMs = m_clock.elapsed();
    log(QStringLiteral("%1 after %2: %3")
            .arg(outcomeWord(end.outcome), RenderLengthText(m_report.elapsedMs),
                 end.message.isEmpty() ? QStringLiteral("ok") : end.message));
    m_report.logFile = writeLog();
    m_workspace.release();
    if (end.isDone())
        setProgress(100);
    Job::end(m_report);
}

RenderReport RenderJob::runToEnd() {
    RunToEnd(*this, [this] { start(); });
    return m_report;
}

} // namespace cq
