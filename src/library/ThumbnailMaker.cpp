#include "library/ThumbnailMaker.h"

#include "library/FolderListing.h"
#include "library/MediaTyping.h"
#include "platform/RegularFiles.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace cq {

namespace {

// A photo decodes within these; a picture whose pixels would not fit fails at once instead of
// filling memory and then the disk with its pixel cache. 128 megapixels is a 14-k square.
const QStringList kResourceLimits{"-limit", "memory", "256MiB", "-limit", "map",  "512MiB",
                                  "-limit", "disk",   "1GiB",   "-limit", "area", "128MP"};
// Far beyond any picture's time; a tool that hangs on one gives its slot back.
constexpr int kThumbnailTimeoutMs = 120000;

// The thumbnail keeps the picture's extension (the tool writes the format it names) but nothing
// else of the picture's name.
QString ThumbnailExtension(const ThumbnailJob& job) {
    const QString extension = GetFileExtension(QFileInfo(job.picture).fileName()).toLower();
    const bool plain = std::all_of(extension.cbegin(), extension.cend(), [](QChar ch) {
        return ch.unicode() < 128 && ch.isLetterOrNumber();
    });
    return plain && !extension.isEmpty() ? extension : QStringLiteral("jpg");
}

// What the file itself tells, before what the tool said.
QString FailureReason(const QString& picture, const QString& errorText) {
    const QString notRegular = WhyNotARegularFile(picture);
    if (!notRegular.isEmpty())
        return QStringLiteral("not a regular file: %1").arg(notRegular);
    const QFileInfo info(picture);
    if (!info.isReadable())
        return QStringLiteral("not readable");
    if (info.size() == 0)
        return QStringLiteral("an empty file");
    return PictureToolReason(errorText);
}

} // namespace

QList<ThumbnailJob> PlanThumbnails(const QString& picturesFolder, const QStringList& entries,
                                   const QString& thumbnailFolder) {
    QList<ThumbnailJob> jobs;
    for (const QString& entry : entries) {
        if (entry.isEmpty() || GetMediaTypeFromFileSpec(entry) != MediaKind::Pictures)
            continue;
        ThumbnailJob job{JoinPath(picturesFolder, entry), JoinPath(thumbnailFolder, entry)};
        const QFileInfo thumbnail(job.thumbnail);
        if (thumbnail.exists() && thumbnail.lastModified() >= QFileInfo(job.picture).lastModified())
            continue;
        jobs.append(job);
    }
    return jobs;
}

ToolCommand ThumbnailCommand(const QString& convertPath, const ThumbnailJob& job) {
    const QString written = QStringLiteral("thumbnail.") + ThumbnailExtension(job);
    ToolCommand command;
    command.program = convertPath;
    // One core per tool: the pool runs as many tools as there are cores. The exception log is
    // what names the cause when a picture's reader gives up without saying why.
    command.arguments << QStringLiteral("-debug") << QStringLiteral("Exception")
                      << QStringLiteral("-limit") << QStringLiteral("thread") << QStringLiteral("1")
                      << kResourceLimits;
    // jpeg:size lets the JPEG decoder scale down while reading, which is most of the cost.
    command.arguments << QStringLiteral("-define") << QStringLiteral("jpeg:size=268x200")
                      << QStringLiteral("-[0]") << QStringLiteral("-resize")
                      << QStringLiteral("134X100") << written;
    command.standardInputFile = job.picture;
    command.inputFiles = {job.picture};
    command.keptOutputs = {{written, job.thumbnail}};
    return command;
}

QString PictureToolReason(const QString& errorText) {
    // "convert: no decode delegate for this image format `x' @ error/constitute.c/...", or in
    // the exception log an indented line under its heading. The file named is the tool's
    // temporary copy of standard input and tells the user nothing.
    static const QRegularExpression kTail(QStringLiteral("\\s*`[^']*'.*$|\\s+@ .*$"));
    static const QRegularExpression kTool(QStringLiteral("^[\\w.-]+: "));
    QString fallback;
    for (const QString& line : errorText.split(u'\n', Qt::SkipEmptyParts)) {
        if (line.contains(QStringLiteral(" Exception ")) && line.contains(QStringLiteral("]: ")))
            continue; // the heading of a logged exception
        QString reason = line.trimmed().remove(kTool).remove(kTail).trimmed();
        if (reason.isEmpty())
            continue;
        if (reason.startsWith(QStringLiteral("no images defined"))) {
            fallback = QStringLiteral("the picture tool could not read it");
            continue;
        }
        return reason;
    }
    return fallback.isEmpty() ? QStringLiteral("the picture tool made none") : fallback;
}

ThumbnailMaker::ThumbnailMaker(ToolPool& pool, const QString& convertPath, const QString& workSpace,
                               QObject* parent)
    : Job(parent), m_pool(&pool), m_convertPath(convertPath), m_workSpace(workSpace) {
    connect(m_pool, &ToolPool::taskFinished, this, &ThumbnailMaker::onTaskFinished);
}

ThumbnailMaker::~ThumbnailMaker() {
    if (!m_pool)
        return;
    m_pool->disconnect(this);
    const QList<int> ids = m_tasks.keys();
    for (int id : ids)
        m_pool->cancel(id);
}

QList<ThumbnailJob> ThumbnailMaker::withoutKnownFailures(const QList<ThumbnailJob>& jobs) const {
    QList<ThumbnailJob> kept;
    for (const ThumbnailJob& job : jobs) {
        const auto failed = m_failures.constFind(job.picture);
        if (failed == m_failures.constEnd() ||
            failed->modified != QFileInfo(job.picture).lastModified())
            kept.append(job);
    }
    return kept;
}

QList<ThumbnailFailure> ThumbnailMaker::knownFailures(const QList<ThumbnailJob>& jobs) const {
    QList<ThumbnailFailure> known;
    for (const ThumbnailJob& job : jobs) {
        const auto failed = m_failures.constFind(job.picture);
        if (failed != m_failures.constEnd() &&
            failed->modified == QFileInfo(job.picture).lastModified())
            known.append({job.picture, failed->reason});
    }
    return known;
}

QStringList ThumbnailMaker::failedPictures() const {
    QStringList pictures;
    for (const ThumbnailFailure& failure : m_lastFailures)
        pictures << failure.picture;
    return pictures;
}

bool ThumbnailMaker::start(const QList<ThumbnailJob>& jobs) {
    if (isRunning() || jobs.isEmpty() || m_convertPath.isEmpty() || !m_pool)
        return false;
    m_jobs = jobs;
    m_reasons.clear();
    m_lastFailures.clear();
    m_done = 0;
    m_cancelled = false;
    restartProgress();
    for (int i = 0; i < m_jobs.size(); ++i) {
        ToolTask task;
        task.command = ThumbnailCommand(m_convertPath, m_jobs.at(i));
        task.workSpace = m_workSpace;
        task.timeoutMs = kThumbnailTimeoutMs;
        m_tasks.insert(m_pool->submit(task), i);
    }
    return true;
}

void ThumbnailMaker::onTaskFinished(int id, const RunResult& result) {
    const auto task = m_tasks.constFind(id);
    if (task == m_tasks.constEnd())
        return;
    const int job = task.value();
    m_tasks.erase(task);
    if (result.ok()) {
        m_failures.remove(m_jobs.at(job).picture);
        pictureDone();
    } else if (!result.cancelled()) {
        m_reasons.insert(job, FailureReason(m_jobs.at(job).picture, result.errorText));
        pictureDone();
    }
    if (m_tasks.isEmpty())
        finish();
}

void ThumbnailMaker::pictureDone() {
    ++m_done;
    setProgress(int(100LL * m_done / m_jobs.size()));
}

void ThumbnailMaker::finish() {
    for (auto it = m_reasons.cbegin(); it != m_reasons.cend(); ++it) {
        const QString& picture = m_jobs.at(it.key()).picture;
        m_failures.insert(picture, {QFileInfo(picture).lastModified(), it.value()});
    }
    QList<int> failed = m_reasons.keys();
    std::sort(failed.begin(), failed.end());
    for (int job : failed)
        m_lastFailures.append({m_jobs.at(job).picture, m_reasons.value(job)});
    end(m_cancelled ? JobEnd::cancelled() : JobEnd::done());
}

void ThumbnailMaker::cancel() {
    if (!isRunning())
        return;
    m_cancelled = true;
    // Cancelling a queued task reports it later, so the ids are taken first.
    const QList<int> ids = m_tasks.keys();
    for (int id : ids)
        if (m_pool)
            m_pool->cancel(id);
}

} // namespace cq
