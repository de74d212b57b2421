#include "timeline/Project.h"

#include "captions/CaptionsFile.h"
#include "platform/Folders.h"
#include "platform/WavFormat.h"
#include "studio/TimelineFile.h"

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

ProjectResult SaveProject(const QString& projectFolder, const QList<EventRow>& rows,
                          const QString& voiceFileSpec, const QString& workFolder,
                          const CaptionCues& captions) {
    ProjectResult result;
    if (!QFileInfo(voiceFileSpec).isFile()) {
        result.error = QStringLiteral("Please record a sound first");
        return result;
    }
    if (!MakeFolderPath(projectFolder)) {
        result.error = QStringLiteral("The folder \"%1\" could not be made.").arg(projectFolder);
        return result;
    }
    const QDir project(projectFolder);
    if (!copyReplacing(voiceFileSpec, project.filePath(QString::fromLatin1(kProjectVoiceFileName)),
                       &result.error))
        return result;
    QList<EventRow> saved = rows;
    for (EventRow& row : saved) {
        if (!isInside(row.fileSpec, workFolder))
            continue;
        const QString target = project.filePath(QFileInfo(row.fileSpec).fileName());
        if (!QFileInfo(row.fileSpec).isFile()) {
            result.missingFiles << row.fileSpec;
            continue;
        }
        if (!copyReplacing(row.fileSpec, target, &result.error))
            return result;
        row.fileSpec = target;
    }
    const QString timeline = project.filePath(QString::fromLatin1(kProjectTimelineFileName));
    if (!WriteTimelineFile(saved, timeline))
        result.error = QStringLiteral("\"%1\" could not be written.").arg(timeline);
    const QString captionsFile = CaptionsFileIn(projectFolder);
    if (result.ok() && !SaveCaptionsFile(captions, captionsFile))
        result.error = QStringLiteral("\"%1\" could not be written.").arg(captionsFile);
    result.rows = saved;
    return result;
}

ProjectResult OpenProject(const QString& projectFolder, const QString& voiceFileSpec,
                          const QString& workFolder) {
    ProjectResult result;
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
    for (EventRow& row : read.rows) {
        if (!QFileInfo(row.fileSpec).isFile()) {
            result.missingFiles << row.fileSpec;
            continue;
        }
        // Text pictures live in the work folder, as after a recording.
        if (row.isTextEvent() && isInside(row.fileSpec, projectFolder)) {
            const QString target = QDir(workFolder).filePath(QFileInfo(row.fileSpec).fileName());
            if (!copyReplacing(row.fileSpec, target, &result.error))
                return result;
            row.fileSpec = target;
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
