#include "render/PieceScheduler.h"

#include "platform/TextFiles.h"
#include "platform/ToolPool.h"
#include "render/BurnedCaptions.h"
#include "render/FullDisk.h"
#include "render/PieceCommands.h"

#include <QFile>
#include <QSet>

#include <algorithm>

namespace cq {

namespace {

// Why a run did not make its pieces, for the log and the user.
QString runProblem(const RunResult& r) {
    const QStringList lines = r.errorText.trimmed().split(u'\n', Qt::SkipEmptyParts);
    if (!lines.isEmpty())
        return lines.mid(std::max<qsizetype>(0, lines.size() - 3)).join(QStringLiteral(" / "));
    if (r.cancelled())
        return QStringLiteral("ffmpeg did not end in time and was stopped");
    return QStringLiteral("ffmpeg ended with exit code %1").arg(r.exitCode);
}

// What the user is told of a file ffmpeg could not make a piece of: plain words where its
// message is one of the common ones, its own last lines otherwise. The piece's check speaks only
// for a run that ended well; after a failed one it says no more than the run did.
QString itemProblem(const RunResult& r, const QString& pieceCheck) {
    if (r.ok())
        return pieceCheck;
    if (r.errorText.contains(QLatin1String("matches no streams")))
        return QStringLiteral("it holds no picture");
    if (r.errorText.contains(QLatin1String("Invalid data found when processing input")))
        return QStringLiteral("it is no picture or video that ffmpeg can read");
    return runProblem(r);
}

// Far past any honest run time a run is stopped, and its pieces count as failed: a minute to
// start ffmpeg and open the inputs, then 50 ms a frame, many times what an encoder needs for a
// frame even on a slow, busy machine; and no run of pieces gets more than an hour.
constexpr qint64 kRunStartAllowanceMs = 60000;
constexpr qint64 kFrameAllowanceMs = 50;
constexpr qint64 kLongestRunMs = 3600000;

int timeLimitMs(qint64 frames) {
    return int(std::min(kRunStartAllowanceMs + frames * kFrameAllowanceMs, kLongestRunMs));
}

} // namespace

PieceScheduler::PieceScheduler(const RenderInputs& in, const RenderPlan& plan,
                               const RenderSpace& space, ToolPool& pool, QObject* parent)
    : QObject(parent), m_in(in), m_plan(plan), m_space(space), m_pool(&pool),
      m_cache(space.folder, *in.container) {
    connect(&pool, &ToolPool::taskStarted, this, &PieceScheduler::onStarted);
    connect(&pool, &ToolPool::taskFinished, this, &PieceScheduler::onFinished);
}

PieceScheduler::~PieceScheduler() {
    cancelRuns();
}

void PieceScheduler::start() {
    if (m_running)
        return;
    m_running = true;
    m_attempts = QList<int>(m_plan.segments.size(), 0);
    const QList<Run> runs = neededRuns();
    emit progress(m_framesDone, m_framesTotal);
    if (m_runs.isEmpty() && runs.isEmpty())
        return end(Ending::Finished);
    for (const Run& run : runs)
        submit(run);
}

QList<PieceScheduler::Run> PieceScheduler::neededRuns() {
    QList<Run> runs;
    QList<int> stills;
    QSet<QString> seen; // each piece once, even when one picture at one length comes again
    for (int i = 0; i < m_plan.segments.size(); ++i) {
        const RenderSegment& s = m_plan.segments[i];
        if (seen.contains(s.piece))
            continue;
        seen.insert(s.piece);
        m_framesTotal += s.frames;
        if (m_cache.isReusable(s)) {
            emit logLine(
                QStringLiteral("piece %1 (%2) unchanged, reused").arg(s.number).arg(s.source));
            ++m_reused;
            m_framesDone += s.frames;
            continue;
        }
        m_cache.forget(s);
        if (!s.sourceProblem.isEmpty()) {
            showBlack(i, s.sourceProblem);
            continue;
        }
        // ffmpeg 5.1 spins without end when a video input shares a run with looped stills;
        // pieces of one video share a run, which decodes the video once for all of them.
        if (s.kind != SegmentKind::Video) {
            stills << i;
            continue;
        }
        const auto same = std::find_if(runs.begin(), runs.end(), [&](const Run& run) {
            return m_plan.segments[run.segments.first()].source == s.source &&
                   run.segments.size() < kMaxPiecesPerRun;
        });
        if (same != runs.end())
            same->segments << i;
        else
            runs << Run{{i}, false, {}};
    }
    // The longest runs first, so that none of them starts last and holds up the join alone.
    std::stable_sort(runs.begin(), runs.end(),
                     [this](const Run& a, const Run& b) { return frames(a) > frames(b); });
    addStillRuns(stills, runs);
    return runs;
}

// A still costs little beside the start of an ffmpeg run, now that only a few of its frames are
// encoded: the stills share as few runs as keep the pool's slots busy, one per slot that no
// video run holds, so that every slot starts at once. No run grows so long that the progress
// stands still.
void PieceScheduler::addStillRuns(const QList<int>& stills, QList<Run>& runs) const {
    const qsizetype freeSlots = std::max<qsizetype>(1, m_pool->maxRunning() - runs.size());
    const qsizetype batch =
        std::clamp<qsizetype>((stills.size() + freeSlots - 1) / freeSlots, 1, kMaxPiecesPerRun);
    for (qsizetype i = 0; i < stills.size(); i += batch)
        runs << Run{stills.mid(i, batch), false, {}};
}

void PieceScheduler::submit(const Run& run) {
    QList<RenderSegment> segments;
    QStringList sources;
    for (int i : run.segments) {
        const RenderSegment& s = m_plan.segments[i];
        segments << s;
        sources << (run.black ? m_in.blackPicture : s.source);
        // Captions that cannot be written fail the run, and the piece is handled as any other.
        if (!s.captions.isEmpty() &&
            WriteWholeFile(BurnedCaptionsScript(s.captions, m_in.frameRate, m_in.frameSize),
                           s.captionsScript))
            sources << s.captionsScript;
    }
    ToolTask task;
    task.command =
        run.black ? StandInCommand(m_in, segments.first()) : PieceRunCommand(m_in, segments);
    task.command.inputFiles = sources;
    task.workSpace = m_space.folder;
    task.timeoutMs = timeLimitMs(frames(run));
    emit logLine(QStringLiteral("pieces %1%2: %3")
                     .arg(pieceNumbers(run), run.black ? QStringLiteral(" (black)") : QString(),
                          task.command.commandLine()));
    m_runs.insert(m_pool->submit(task), run);
}

void PieceScheduler::onStarted(int id) {
    const auto run = m_runs.find(id);
    if (run != m_runs.end())
        run->clock.start();
}

void PieceScheduler::onFinished(int id, const RunResult& result) {
    const auto found = m_runs.constFind(id);
    if (found == m_runs.constEnd())
        return; // another job's task, or one of a run that ended
    const Run run = *found;
    m_runs.erase(found);
    if (!m_running)
        return;
    if (m_cancelling) {
        if (m_runs.isEmpty())
            end(Ending::Cancelled);
        return;
    }
    emit logLine(QStringLiteral("pieces %1 ended after %2 ms")
                     .arg(pieceNumbers(run))
                     .arg(run.clock.isValid() ? run.clock.elapsed() : 0));
    if (!takePieces(run, result))
        return;
    emit progress(m_framesDone, m_framesTotal);
    if (m_runs.isEmpty())
        end(Ending::Finished);
}

bool PieceScheduler::takePieces(const Run& run, const RunResult& result) {
    for (int i : run.segments) {
        const RenderSegment& s = m_plan.segments[i];
        // ffmpeg can end well after a write error: the file itself decides.
        const QString problem = m_cache.accept(s, !run.black);
        if (problem.isEmpty()) {
            m_framesDone += s.frames;
            continue;
        }
        m_failure = FullDiskProblem(result.errorText, m_space.folder);
        if (!m_failure.isEmpty()) {
            emit logLine(QStringLiteral("piece %1: %2").arg(s.number).arg(problem));
            end(Ending::Failed);
            return false;
        }
        if (!result.ok())
            emit logLine(QStringLiteral("piece %1: ffmpeg said: %2; %3")
                             .arg(s.number)
                             .arg(runProblem(result), problem));
        if (!pieceFailed(i, run.black, itemProblem(result, problem)))
            return false;
    }
    return true;
}

bool PieceScheduler::pieceFailed(int index, bool wasBlack, const QString& reason) {
    const RenderSegment& s = m_plan.segments[index];
    emit logLine(QStringLiteral("piece %1 (%2) failed: %3").arg(s.number).arg(s.source, reason));
    QFile::remove(s.partial);
    if (wasBlack ||
        (s.kind == SegmentKind::Black && m_attempts[index] + 1 >= kAttemptsBeforeBlack)) {
        m_failure = QStringLiteral("Even black could not be rendered from \"%1\": %2")
                        .arg(m_in.blackPicture, reason);
        end(Ending::Failed);
        return false;
    }
    if (++m_attempts[index] < kAttemptsBeforeBlack)
        submit(Run{{index}, false, {}}); // on its own: one bad file fails a whole run
    else
        showBlack(index, reason);
    return true;
}

// The item shows black for its time, so everything after it keeps its place.
void PieceScheduler::showBlack(int index, const QString& reason) {
    // Named once, however many pieces of it there are (a picture cut by captions).
    if (!m_failedItems.contains(m_plan.segments[index].source)) {
        m_failedItems << m_plan.segments[index].source;
        m_failureReasons << reason;
    }
    submit(Run{{index}, true, {}});
}

qint64 PieceScheduler::frames(const Run& run) const {
    qint64 total = 0;
    for (int i : run.segments)
        total += m_plan.segments[i].frames;
    return total;
}

QString PieceScheduler::pieceNumbers(const Run& run) const {
    QStringList numbers;
    for (int i : run.segments)
        numbers << QString::number(m_plan.segments[i].number);
    return numbers.join(u',');
}

void PieceScheduler::cancel() {
    if (!m_running || m_cancelling)
        return;
    m_cancelling = true;
    if (m_runs.isEmpty() || !m_pool)
        return end(Ending::Cancelled);
    // Each run's end still comes from the pool; the last one ends the cancel.
    for (int id : m_runs.keys())
        if (m_pool)
            m_pool->cancel(id);
}

void PieceScheduler::cancelRuns() {
    const QList<int> ids = m_runs.keys();
    m_runs.clear();
    for (int id : ids)
        if (m_pool)
            m_pool->cancel(id);
}

void PieceScheduler::end(Ending ending) {
    if (!m_running)
        return;
    m_running = false;
    cancelRuns();
    if (ending == Ending::Failed)
        emit failed(m_failure);
    else if (ending == Ending::Cancelled)
        emit cancelled();
    else
        emit finished();
}

} // namespace cq
