#include "render/PieceScheduler.h"

#include "platform/ToolRunner.h"
#include "render/FullDisk.h"
#include "render/PieceLines.h"

#include <QFile>
#include <QSet>
#include <QTimer>

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

// Far past any honest run time a run is stopped, and its pieces count as failed.
int watchdogMs(qint64 frames) {
    return int(std::min<qint64>(60000 + frames * 50, 3600000));
}

} // namespace

PieceScheduler::PieceScheduler(const RenderInputs& in, const RenderPlan& plan,
                               const RenderSpace& space, int parallelism, QObject* parent)
    : QObject(parent), m_in(in), m_plan(plan), m_space(space),
      m_cache(space.folder, *in.container) {
    for (int i = 0; i < std::max(1, parallelism); ++i) {
        auto* runner = new ToolRunner(this);
        runner->setKillGraceMilliseconds(500);
        connect(runner, &ToolRunner::finished, this,
                [this, i](const RunResult& r) { runFinished(i, r); });
        auto* watchdog = new QTimer(this);
        watchdog->setSingleShot(true);
        connect(watchdog, &QTimer::timeout, this, [this, runner] {
            emit logLine(QStringLiteral("a piece run did not end in time and was stopped"));
            runner->cancel();
        });
        m_runners << runner;
        m_watchdogs << watchdog;
        m_busy << Run{};
        m_runClocks << QElapsedTimer();
    }
}

PieceScheduler::~PieceScheduler() {
    for (int i = 0; i < m_runners.size(); ++i)
        QFile::remove(scriptFile(i));
}

QString PieceScheduler::scriptFile(int runner) const {
    return m_space.scriptPrefix + QStringLiteral("%1.sh").arg(runner + 1);
}

void PieceScheduler::start() {
    if (m_running)
        return;
    m_running = true;
    m_attempts = QList<int>(m_plan.segments.size(), 0);
    queueNeededPieces();
    emit progress(m_framesDone, m_framesTotal);
    for (int i = 0; i < m_runners.size() && m_running; ++i)
        startNext(i);
}

void PieceScheduler::queueNeededPieces() {
    // Each piece once, even when one picture at one length appears several times.
    QSet<QString> seen;
    QList<int> stills;
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
        const auto same = std::find_if(m_queue.begin(), m_queue.end(), [&](const Run& run) {
            return !run.black && m_plan.segments[run.segments.first()].source == s.source &&
                   run.segments.size() < kMaxPiecesPerRun;
        });
        if (same != m_queue.end())
            same->segments << i;
        else
            m_queue << Run{{i}, false};
    }
    queueStills(stills);
}

// A still costs little beside the start of an ffmpeg run, now that only a few of its frames are
// encoded: the stills share as few runs as keep the cores busy, one per core that no video run
// holds, so that every core starts at once. No run grows so long that the progress stands still.
void PieceScheduler::queueStills(const QList<int>& stills) {
    const qsizetype runs = std::max<qsizetype>(1, m_runners.size() - qsizetype(m_queue.size()));
    const qsizetype batch =
        std::clamp<qsizetype>((stills.size() + runs - 1) / runs, 1, kMaxPiecesPerRun);
    for (qsizetype i = 0; i < stills.size(); i += batch)
        m_queue << Run{stills.mid(i, batch), false};
}

void PieceScheduler::startNext(int runner) {
    if (!m_running || m_cancelling)
        return;
    if (m_queue.isEmpty()) {
        m_busy[runner] = {};
        if (!anyRunnerBusy())
            end(Ending::Finished);
        return;
    }
    const Run run = m_queue.takeFirst();
    m_busy[runner] = run;
    m_runClocks[runner].start();
    QList<RenderSegment> segments;
    qint64 frames = 0;
    for (int i : run.segments) {
        segments << m_plan.segments[i];
        frames += m_plan.segments[i].frames;
    }
    const QString line =
        run.black ? StandInLine(m_in, segments.first()) : PieceRunLine(m_in, segments);
    emit logLine(
        QStringLiteral("pieces %1%2: %3")
            .arg(pieceNumbers(run), run.black ? QStringLiteral(" (black)") : QString(), line));
    m_watchdogs[runner]->start(watchdogMs(frames));
    m_runners[runner]->startScript(line, scriptFile(runner));
}

void PieceScheduler::runFinished(int runner, const RunResult& result) {
    m_watchdogs[runner]->stop();
    const Run run = m_busy[runner];
    m_busy[runner] = {};
    if (!m_running)
        return;
    if (m_cancelling) {
        if (!anyRunnerBusy())
            end(Ending::Cancelled);
        return;
    }
    emit logLine(QStringLiteral("pieces %1 ended after %2 ms")
                     .arg(pieceNumbers(run))
                     .arg(m_runClocks[runner].elapsed()));
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
            return end(Ending::Failed);
        }
        pieceFailed(i, run.black,
                    result.ok() ? problem : runProblem(result) + QStringLiteral("; ") + problem);
        if (!m_running)
            return;
    }
    emit progress(m_framesDone, m_framesTotal);
    startNext(runner);
}

void PieceScheduler::pieceFailed(int index, bool wasBlack, const QString& reason) {
    const RenderSegment& s = m_plan.segments[index];
    emit logLine(QStringLiteral("piece %1 (%2) failed: %3").arg(s.number).arg(s.source, reason));
    QFile::remove(s.partial);
    if (wasBlack ||
        (s.kind == SegmentKind::Black && m_attempts[index] + 1 >= kAttemptsBeforeBlack)) {
        m_failure = QStringLiteral("Even black could not be rendered from \"%1\": %2")
                        .arg(m_in.blackPicture, reason);
        end(Ending::Failed);
        return;
    }
    if (++m_attempts[index] < kAttemptsBeforeBlack) {
        m_queue.prepend(Run{{index}, false}); // on its own: one bad file fails a whole run
        return;
    }
    showBlack(index, reason);
}

// The item shows black for its time, so everything after it keeps its place.
void PieceScheduler::showBlack(int index, const QString& reason) {
    m_failedItems << m_plan.segments[index].source;
    m_failureReasons << reason;
    m_queue.prepend(Run{{index}, true});
}

QString PieceScheduler::pieceNumbers(const Run& run) const {
    QStringList numbers;
    for (int i : run.segments)
        numbers << QString::number(m_plan.segments[i].number);
    return numbers.join(u',');
}

bool PieceScheduler::anyRunnerBusy() const {
    return std::any_of(m_busy.begin(), m_busy.end(),
                       [](const Run& r) { return !r.segments.isEmpty(); });
}

void PieceScheduler::cancel() {
    if (!m_running || m_cancelling)
        return;
    m_cancelling = true;
    m_queue.clear();
    if (!anyRunnerBusy())
        return end(Ending::Cancelled);
    for (ToolRunner* r : m_runners)
        if (r->isRunning())
            r->cancel();
}

void PieceScheduler::end(Ending ending) {
    if (!m_running)
        return;
    m_running = false;
    for (QTimer* w : m_watchdogs)
        w->stop();
    for (ToolRunner* r : m_runners)
        if (r->isRunning())
            r->cancel();
    if (ending == Ending::Failed)
        emit failed(m_failure);
    else if (ending == Ending::Cancelled)
        emit cancelled();
    else
        emit finished();
}

} // namespace cq
