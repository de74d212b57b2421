#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace cq {

// A project is saved into a complete new folder beside it, "<project>.saving", which is synced
// to the disk and then swapped with the project in one step; the files of the old folder that
// the studio did not write are carried into the new one first. An interrupted save therefore
// leaves the old project or the new one, never a mix of the two.
//
// Where the file system cannot swap two names in one step, the old folder is first renamed to
// "<project>.replaced" and the new one then takes the project's name: a crash between the two
// leaves both whole but the project under neither name, and the next save or open puts the old
// one back.

// Lets a test stop or break a save between its steps.
struct ProjectSaveSeams {
    std::function<void(const char* step)> afterStep; // called with the name of each step done
    bool refuseExchange = false;                     // acts as a file system that cannot swap
};
ProjectSaveSeams& ProjectSaveSeamsForTests();
void ReachedProjectSaveStep(const char* step);

QString SavingFolderOf(const QString& project);
QString ReplacedFolderOf(const QString& project);

// The names in a project folder that the studio wrote: the voice, the timeline, the captions and
// the text pictures its timeline names.
QStringList StudioFileNamesIn(const QString& projectFolder);

// When an interrupted save left the project under neither name, its folder from before the save
// is renamed back. Returns whether the project was put back.
bool PutBackProjectOfInterruptedSave(const QString& project);

// Empty unless the folder is one an interrupted save left beside a project; then a sentence
// naming the project to open instead (put back first when it was under neither name).
QString LeftoverOfSaveProblem(const QString& folder);

// Before a save: removes what an interrupted save left beside the project (its own files and
// copies of the project's). False with *error set when such a folder holds anything else.
// *notice says what was removed.
bool ClearLeftoversOfSave(const QString& project, QString* notice, QString* error);

// Removes the folder of a save that failed before it was put in place: the files written into it
// (named in writtenNames) and the copies of the project's own.
void DiscardUnfinishedSave(const QString& project, const QStringList& writtenNames);

// Puts the complete new folder in place of the project (made when missing), carrying the files
// of the old folder not named in writtenNames nor written by the studio, then removes the old
// folder. *notice is set when the old folder had to be kept. A failure leaves the project as it
// was and discards the new folder.
bool PutSavedFolderInPlace(const QString& saving, const QString& project,
                           const QStringList& writtenNames, QString* notice, QString* error);

} // namespace cq
