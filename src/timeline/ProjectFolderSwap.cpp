#include "timeline/ProjectFolderSwap.h"

#include "captions/CaptionsFile.h"
#include "platform/DurableFiles.h"
#include "platform/FolderExchange.h"
#include "studio/TimelineFile.h"
#include "timeline/Project.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace cq {

namespace {

QString parentOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

// Removes the studio's files of a folder another has replaced, then whatever the replacing
// folder also holds. Returns whether the folder is gone.
bool removeReplacedFolder(const QString& old, const QString& project,
                          const QStringList& studioNames) {
    for (const QString& name : studioNames)
        QFile::remove(QDir(old).filePath(name));
    return RemoveCarriedEntries(old, project);
}

QStringList fixedStudioFileNames() {
    return {QString::fromLatin1(kProjectVoiceFileName),
            QString::fromLatin1(kProjectTimelineFileName), QString::fromLatin1(kCaptionsFileName)};
}

bool keepModeOf(const QString& from, const QString& to, QString* error) {
    struct stat st {};
    if (::stat(QFile::encodeName(from).constData(), &st) == 0 &&
        ::chmod(QFile::encodeName(to).constData(), st.st_mode & 07777) == 0)
        return true;
    *error = QStringLiteral("The folder \"%1\" could not be given the permissions of \"%2\".")
                 .arg(to, from);
    return false;
}

bool swapIn(const QString& saving, const QString& project, QString* old, QString* error) {
    const FolderExchange swapped = ProjectSaveSeamsForTests().refuseExchange
                                       ? FolderExchange::NotSupported
                                       : ExchangePaths(saving, project, error);
    if (swapped == FolderExchange::Failed)
        return false;
    if (swapped == FolderExchange::Exchanged) {
        *old = saving;
        return true;
    }
    *old = ReplacedFolderOf(project);
    if (!RenameFolder(project, *old, error))
        return false;
    ReachedProjectSaveStep("moved aside");
    if (RenameFolder(saving, project, error))
        return true;
    PutBackProjectOfInterruptedSave(project);
    return false;
}

} // namespace

ProjectSaveSeams& ProjectSaveSeamsForTests() {
    static ProjectSaveSeams seams;
    return seams;
}

void ReachedProjectSaveStep(const char* step) {
    if (ProjectSaveSeamsForTests().afterStep)
        ProjectSaveSeamsForTests().afterStep(step);
}

QString SavingFolderOf(const QString& project) {
    return QDir::cleanPath(project) + QStringLiteral(".saving");
}

QString ReplacedFolderOf(const QString& project) {
    return QDir::cleanPath(project) + QStringLiteral(".replaced");
}

QStringList StudioFileNamesIn(const QString& projectFolder) {
    const QString timeline =
        QDir(projectFolder).filePath(QString::fromLatin1(kProjectTimelineFileName));
    // A folder without a timeline holds no project: what is in it is somebody else's.
    if (!QFileInfo(timeline).isFile())
        return {};
    QStringList names = fixedStudioFileNames();
    const QString base = QDir::cleanPath(QFileInfo(projectFolder).absoluteFilePath());
    for (const TimelineEvent& row : ReadTimelineFile(timeline).rows)
        if (row.isText() && QFileInfo(row.file).absolutePath() == base)
            names << QFileInfo(row.file).fileName();
    names.removeDuplicates();
    return names;
}

bool PutBackProjectOfInterruptedSave(const QString& project) {
    const QString replaced = ReplacedFolderOf(project);
    QString why;
    return !QFileInfo::exists(project) && QFileInfo(replaced).isDir() &&
           RenameFolder(replaced, project, &why);
}

QString LeftoverOfSaveProblem(const QString& folder) {
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    for (const QString& suffix : {QStringLiteral(".saving"), QStringLiteral(".replaced")}) {
        if (!path.endsWith(suffix) || QFileInfo(path).fileName() == suffix)
            continue;
        const QString project = path.chopped(suffix.size());
        if (QFileInfo(project).isDir() || PutBackProjectOfInterruptedSave(project))
            return QStringLiteral("\"%1\" was left by a save of the project \"%2\" that was "
                                  "interrupted. Open \"%2\" instead, which holds the project "
                                  "whole.")
                .arg(path, project);
        if (suffix == QStringLiteral(".saving"))
            return QStringLiteral("\"%1\" was left by a save of the project \"%2\" that was "
                                  "interrupted before it was complete. Save the recording "
                                  "again.")
                .arg(path, project);
    }
    return {};
}

bool ClearLeftoversOfSave(const QString& project, QString* notice, QString* error) {
    if (PutBackProjectOfInterruptedSave(project))
        *notice = QStringLiteral("An earlier save of this project was interrupted; the project "
                                 "from before it was put back first.");
    const QString saving = SavingFolderOf(project);
    for (const QString& left : {ReplacedFolderOf(project), saving}) {
        if (!QFileInfo::exists(left))
            continue;
        // A save may have stopped in the folder it was making before it wrote the timeline.
        const QStringList studioNames =
            StudioFileNamesIn(left) + (left == saving ? fixedStudioFileNames() : QStringList());
        if (!QFileInfo(left).isDir() || !removeReplacedFolder(left, project, studioNames)) {
            *error = QStringLiteral("An earlier save of this project was interrupted and left "
                                    "\"%1\", which holds files that are not in the project. Move "
                                    "what you want to keep out of it and remove it, then save "
                                    "again.")
                         .arg(left);
            return false;
        }
        if (notice->isEmpty())
            *notice = QStringLiteral("An earlier save of this project was interrupted; what it "
                                     "left in \"%1\" was removed.")
                          .arg(left);
    }
    return true;
}

void DiscardUnfinishedSave(const QString& project, const QStringList& writtenNames) {
    removeReplacedFolder(SavingFolderOf(project), project, writtenNames);
}

bool PutSavedFolderInPlace(const QString& saving, const QString& project,
                           const QStringList& writtenNames, QString* notice, QString* error) {
    const bool replacing = QFileInfo(project).isDir();
    const QStringList oldStudioNames = replacing ? StudioFileNamesIn(project) : QStringList();
    bool ready = true;
    if (replacing) {
        ready = CarryFolderEntries(project, saving, writtenNames + oldStudioNames, error) &&
                keepModeOf(project, saving, error);
        if (ready)
            ReachedProjectSaveStep("carried");
    }
    ready = ready && SyncTree(saving, error);
    if (ready)
        ReachedProjectSaveStep("synced");
    QString old;
    if (!ready || (replacing ? !swapIn(saving, project, &old, error)
                             : !RenameFolder(saving, project, error))) {
        DiscardUnfinishedSave(project, writtenNames);
        return false;
    }
    // The new names are in the parent folder's list: that list goes to the disk too.
    QString unsynced;
    if (!SyncPath(parentOf(project), &unsynced))
        *notice = QStringLiteral("The project was saved, but the disk did not confirm it (%1).")
                      .arg(unsynced);
    ReachedProjectSaveStep("swapped");
    if (replacing && !removeReplacedFolder(old, project, oldStudioNames))
        *notice = QStringLiteral("The project was saved. Its folder from before is kept as "
                                 "\"%1\", because it holds files that are not in the new one.")
                      .arg(old);
    ReachedProjectSaveStep("cleaned");
    return true;
}

} // namespace cq
