#include "library/ThumbnailMaker.h"

#include "library/FolderListing.h"
#include "library/MediaTyping.h"
#include "platform/ShellQuote.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>

namespace cq {

namespace {
const QString kProgressMark = QStringLiteral("cq-thumbnail-done");

// The temporary name keeps the picture's extension (the tool writes the format it names) but
// nothing else of the picture's name.
QString TemporaryName(const ThumbnailJob& job, int scriptIndex, int line) {
    QString extension = GetFileExtension(QFileInfo(job.picture).fileName()).toLower();
    const bool plain = std::all_of(extension.cbegin(), extension.cend(), [](QChar ch) {
        return ch.unicode() < 128 && ch.isLetterOrNumber();
    });
    if (!plain || extension.isEmpty())
        extension = QStringLiteral("jpg");
    const QString folder = QFileInfo(job.thumbnail).absolutePath();
    return JoinPath(folder,
                    QStringLiteral(".cq-part-%1-%2.%3").arg(scriptIndex).arg(line).arg(extension));
}
} // namespace

QList<ThumbnailJob> PlanThumbnails(const QString& picturesFolder, const QStringList& entries,
                                   const QString& thumbnailFolder) {
    QList<ThumbnailJob> jobs;
    for (const QString& entry : entries) {
        if (entry.isEmpty() || GetMediaTypeFromFileSpec(entry) != QStringLiteral("Pictures"))
            continue;
        ThumbnailJob job{JoinPath(picturesFolder, entry), JoinPath(thumbnailFolder, entry)};
        const QFileInfo thumbnail(job.thumbnail);
        if (thumbnail.exists() && thumbnail.lastModified() >= QFileInfo(job.picture).lastModified())
            continue;
        jobs.append(job);
    }
    return jobs;
}

QString BuildThumbnailScript(const QString& convertPath, const QList<ThumbnailJob>& jobs,
                             int scriptIndex) {
    QString script;
    // Each tool call gets one core; the parallel scripts share out the rest.
    script += QStringLiteral("MAGICK_THREAD_LIMIT=1\nexport MAGICK_THREAD_LIMIT\n");
    int line = 0;
    for (const ThumbnailJob& job : jobs) {
        const QString part = TemporaryName(job, scriptIndex, line++);
        // jpeg:size lets the JPEG decoder scale down while reading, which is most of the cost.
        script +=
            ShellCommandLine({convertPath, QStringLiteral("-define"),
                              QStringLiteral("jpeg:size=268x200"), QStringLiteral("-[0]"),
                              QStringLiteral("-resize"), QStringLiteral("134X100"), part}) +
            QStringLiteral(" < ") + ShellQuote(job.picture) + QStringLiteral(" && ") +
            ShellCommandLine({QStringLiteral("mv"), QStringLiteral("-f"), part, job.thumbnail}) +
            QStringLiteral("; rm -f ") + ShellQuote(part) + QStringLiteral("; echo ") +
            kProgressMark + u'\n';
    }
    return script;
}

ThumbnailMaker::ThumbnailMaker(const QString& convertPath, const QString& scriptFileSpec,
                               QObject* parent)
    : QObject(parent), m_convertPath(convertPath), m_scriptFileSpec(scriptFileSpec),
      m_parallel(std::max(1, QThread::idealThreadCount())) {}

QList<ThumbnailJob> ThumbnailMaker::withoutKnownFailures(const QList<ThumbnailJob>& jobs) const {
    QList<ThumbnailJob> kept;
    for (const ThumbnailJob& job : jobs) {
        const auto failed = m_failures.constFind(job.picture);
        if (failed != m_failures.constEnd() &&
            failed.value() == QFileInfo(job.picture).lastModified())
            continue;
        kept.append(job);
    }
    return kept;
}

QString ThumbnailMaker::scriptFileSpecFor(int index) const {
    if (index == 0)
        return m_scriptFileSpec;
    const QFileInfo info(m_scriptFileSpec);
    return JoinPath(
        info.absolutePath(),
        QStringLiteral("%1%2.%3").arg(info.completeBaseName()).arg(index + 1).arg(info.suffix()));
}

bool ThumbnailMaker::start(const QList<ThumbnailJob>& jobs) {
    if (isRunning() || jobs.isEmpty() || m_convertPath.isEmpty())
        return false;
    qDeleteAll(m_runners);
    m_runners.clear();
    m_jobs = jobs;
    m_done = 0;
    m_cancelled = false;
    m_lastFailures.clear();
    const int scripts = std::min<int>(m_parallel, static_cast<int>(jobs.size()));
    QList<QList<ThumbnailJob>> shares(scripts);
    for (qsizetype i = 0; i < jobs.size(); ++i)
        shares[i % scripts].append(jobs.at(i));
    for (int i = 0; i < scripts; ++i) {
        auto* runner = new ToolRunner(this);
        m_runners.append(runner);
        connect(runner, &ToolRunner::outputLine, this, [this](const QString& line) {
            if (line == kProgressMark) {
                ++m_done;
                emit progress(m_done, totalCount());
            }
        });
        connect(runner, &ToolRunner::finished, this, &ThumbnailMaker::onRunnerFinished);
    }
    // Counted before any start: a script that cannot start reports its end at once.
    m_running = scripts;
    for (int i = 0; i < scripts; ++i)
        m_runners.at(i)->startScript(BuildThumbnailScript(m_convertPath, shares.at(i), i),
                                     scriptFileSpecFor(i));
    return true;
}

void ThumbnailMaker::onRunnerFinished() {
    if (--m_running > 0)
        return;
    for (int i = 0; i < m_runners.size(); ++i)
        QFile::remove(scriptFileSpecFor(i));
    // A stopped script can leave the piece its tool was writing.
    QStringList folders;
    for (const ThumbnailJob& job : std::as_const(m_jobs)) {
        const QString folder = QFileInfo(job.thumbnail).absolutePath();
        if (!folders.contains(folder))
            folders.append(folder);
    }
    for (const QString& folder : std::as_const(folders)) {
        QDir dir(folder, QStringLiteral(".cq-part-*"), QDir::NoSort, QDir::Files | QDir::Hidden);
        for (const QString& piece : dir.entryList())
            dir.remove(piece);
    }
    if (!m_cancelled) {
        for (const ThumbnailJob& job : m_jobs) {
            const QFileInfo thumbnail(job.thumbnail);
            const QDateTime changed = QFileInfo(job.picture).lastModified();
            if (!thumbnail.exists() || thumbnail.lastModified() < changed) {
                m_failures.insert(job.picture, changed);
                m_lastFailures.append(job.picture);
            }
        }
    }
    emit finished(m_cancelled);
}

void ThumbnailMaker::cancel() {
    if (!isRunning())
        return;
    m_cancelled = true;
    for (ToolRunner* runner : std::as_const(m_runners))
        runner->cancel();
}

} // namespace cq
