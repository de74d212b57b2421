#pragma once

#include "timeline/Project.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace cq {

class CaptionTableModel;
class EventGridModel;
struct RecordingState;

// "Save Project" and "Open Project": a recording and its captions kept in a folder of its own.
class ProjectPanel : public QWidget {
    Q_OBJECT
public:
    ProjectPanel(RecordingState& state, EventGridModel& grid, CaptionTableModel& captions,
                 QString voiceFileSpec, QString workFolder, QString projectsFolder,
                 QWidget* parent = nullptr);

    // The dialogs ask these for a folder (tests replace them); empty means cancelled.
    std::function<QString()> askSaveFolder;
    std::function<QString()> askOpenFolder;
    // Asked before an opened project replaces the take there is; false holds the press back.
    std::function<bool()> mayReplaceTake;

    // Asks for a folder and saves the take there as a project; refused while recording.
    void chooseFolderAndSave();
    // Asks for a project folder and opens it, once the take there is may be replaced.
    void chooseFolderAndOpen();

signals:
    void projectSaved(const QString& folder);

private:
    void cmdSaveProject_Click();
    void cmdOpenProject_Click();
    QString defaultSaveFolder() const;
    // Tells the user to stop first and returns true while a recording runs.
    bool refuseWhileRecording(const QString& title);
    bool mayReplaceProjectIn(const QString& folder);
    void saveProject(const QString& folder);
    void openProject(const QString& folder);

    RecordingState& m_state;
    EventGridModel& m_grid;
    CaptionTableModel& m_captions;
    QString m_voiceFileSpec;
    QString m_workFolder;
    QString m_projectsFolder;
    QPushButton* m_cmdSaveProject;
    QPushButton* m_cmdOpenProject;
};

} // namespace cq
