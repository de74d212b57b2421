#include "timeline/Project.h"

#include "captions/CaptionsFile.h"
#include "platform/DurableFiles.h"
#include "platform/Folders.h"
#include "platform/WavFormat.h"
#include "studio/TimelineFile.h"
#include "timeline/ProjectFolderSwap.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cq {

namespace {

bool isInside(const QString& fileSpec, const QString& folder) {
    const QString base = QDir::cleanPath(QDir(folder).absolutePath()) + u'/';
    return QDir::cleanPath(QFileInfo(fileSpec).absoluteFilePath()).startsWith(base);
}

bool sameFile(const QString& a, const QString& b) {
    return QDir::cleanPath(QFileInfo(a).absoluteFilePath()) ==
           QDir::cleanPath(QFileInfo(b).absoluteFilePath());
}

// Replaces target with a copy of source; the old target stays until the copy is complete.
bool copyReplacing(const QString& source, const QString& target, QString* why) {
    if (sameFile(source, target))
        return true;
    const QString partial = target + QStringLiteral(".part");
    QFile::remove(partial);
    QFile in(source);
    if (!in.copy(partial)) {
        *why = QStringLiteral("\"%1\" could not be copied to \"%2\": %3")
                   .arg(source, target, in.errorString());
        QFile::remove(partial);
        return false;
    }
    QFile::remove(target);
    if (!QFile::rename(partial, target)) {
        *why = QStringLiteral("\"%1\" could not be written").arg(target);
        QFile::remove(partial);
        return false;
    }
    return true;
}

} // namespace

bool IsProjectFolder(const QString& folder) {
    return QFileInfo(QDir(folder).filePath(QString::fromLatin1(kProjectTimelineFileName))).isFile();
}

namespace {

// Makes the new project in the folder beside it: the timeline first (so that whatever an
// interrupted save left there is named by it), the voice, the text pictures of the work folder
// and the captions. Returns the names written; *rows point where the files will be once the
// folder is in place.
QStringList writeNewProject(const QString& saving, const QString& project,
                            QList<TimelineEvent>* rows, const QString& voiceFileSpec,
                            const QString& workFolder, const CaptionCues& captions,
                            ProjectResult* result) {
    const QString voiceName = QString::fromLatin1(kProjectVoiceFileName);
    const QString timelineName = QString::fromLatin1(kProjectTimelineFileName);
    QStringList written{timelineName, voiceName, QString::fromLatin1(kCaptionsFileName)};
    QStringList sources{QString(), voiceFileSpec, QString()};
    // The timeline names the files beside it by their names alone, so it is written with the
    // rows as they are in the folder being made.
    QList<TimelineEvent> beside = *rows;
    for (qsizetype i = 0; i < rows->size(); ++i) {
        const QString source = (*rows)[i].file;
        const QString name = QFileInfo(source).fileName();
        if (isInside(source, workFolder)) {
            if (!QFileInfo(source).isFile()) {
                result->missingFiles << source;
                continue;
            }
            if (!written.contains(name)) {
                written << name;
                sources << source;
            }
            (*rows)[i].file = QDir(project).filePath(name);
        }
        if (isInside((*rows)[i].file, project))
            beside[i].file = QDir(saving).filePath(QDir(project).relativeFilePath((*rows)[i].file));
    }
    const QString timeline = QDir(saving).filePath(timelineName);
    if (!WriteTimelineFile(beside, timeline)) {
        result->error = QStringLiteral("\"%1\" could not be written.").arg(timeline);
        return written;
    }
    for (qsizetype i = 0; i < written.size(); ++i)
        if (!sources[i].isEmpty() &&
            !CopyFileSynced(sources[i], QDir(saving).filePath(written[i]), &result->error))
            return written;
    ReachedProjectSaveStep("copied");
    const QString captionsFile = CaptionsFileIn(saving);
    if (!SaveCaptionsFile(captions, captionsFile))
        result->error = QStringLiteral("\"%1\" could not be written.").arg(captionsFile);
    return written;
}

} // namespace

ProjectResult SaveProject(const QString& projectFolder, const QList<TimelineEvent>& rows,
                          const QString& voiceFileSpec, const QString& workFolder,
                          const CaptionCues& captions) {
    ProjectResult result;
    if (!QFileInfo(voiceFileSpec).isFile()) {
        result.error = QStringLiteral("Please record a sound first");
        return result;
    }
    // A project reached through a link is replaced where it really is.
    const QFileInfo given(QDir::cleanPath(QDir(projectFolder.trimmed()).absolutePath()));
    const QString project = given.exists() ? given.canonicalFilePath() : given.absoluteFilePath();
    const QString saving = SavingFolderOf(project);
    if (!MakeFolderPath(given.absolutePath())) {
        result.error = QStringLiteral("The folder \"%1\" could not be made.").arg(projectFolder);
        return result;
    }
    if (!ClearLeftoversOfSave(project, &result.notice, &result.error))
        return result;
    if (!QDir().mkdir(saving)) {
        result.error = QStringLiteral("The folder \"%1\" could not be made.").arg(saving);
        return result;
    }
    QList<TimelineEvent> saved = rows;
    const QStringList written =
        writeNewProject(saving, project, &saved, voiceFileSpec, workFolder, captions, &result);
    if (!result.ok()) {
        DiscardUnfinishedSave(project, written);
        return result;
    }
    if (!PutSavedFolderInPlace(saving, project, written, &result.notice, &result.error))
        return result;
    result.rows = saved;
    return result;
}

ProjectResult OpenProject(const QString& projectFolder, const QString& voiceFileSpec,
                          const QString& workFolder) {
    ProjectResult result;
    result.error = LeftoverOfSaveProblem(projectFolder);
    if (!result.ok())
        return result;
    PutBackProjectOfInterruptedSave(projectFolder);
    const QDir project(projectFolder);
    const QString timeline = project.filePath(QString::fromLatin1(kProjectTimelineFileName));
    TimelineReadResult read = ReadTimelineFile(timeline);
    if (!read.ok()) {
        result.error = QStringLiteral("%1: %2").arg(timeline, read.error);
        return result;
    }
    const QString voice = project.filePath(QString::fromLatin1(kProjectVoiceFileName));
    if (!QFileInfo(voice).isFile()) {
        result.missingFiles << voice;
        QFile::remove(voiceFileSpec);
    } else {
        MakeFolderPath(QFileInfo(voiceFileSpec).absolutePath());
        if (!copyReplacing(voice, voiceFileSpec, &result.error))
            return result;
        result.voiceMs = WavDurationMs(voiceFileSpec);
    }
    MakeFolderPath(workFolder);
    for (TimelineEvent& row : read.rows) {
        if (!QFileInfo(row.file).isFile()) {
            result.missingFiles << row.file;
            continue;
        }
        // Text pictures live in the work folder, as after a recording.
        if (row.isText() && isInside(row.file, projectFolder)) {
            const QString target = QDir(workFolder).filePath(QFileInfo(row.file).fileName());
            if (!copyReplacing(row.file, target, &result.error))
                return result;
            row.file = target;
        }
    }
    result.missingFiles.removeDuplicates();
    result.rows = read.rows;
    const ReadCues captions = ReadCaptionsFile(CaptionsFileIn(projectFolder));
    result.captions = captions.cues;
    result.captionsProblem = captions.problem;
    return result;
}

} // namespace cq
