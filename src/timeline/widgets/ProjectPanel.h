#pragma once

#include "timeline/Project.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace cq {

class CaptionTableModel;
class EventGridModel;

// "Save Project" and "Open Project": a recording and its captions kept in a folder of its own.
class ProjectPanel : public QWidget {
    Q_OBJECT
public:
    ProjectPanel(EventGridModel& grid, CaptionTableModel& captions, QString voiceFileSpec,
                 QString workFolder, QString projectsFolder, QWidget* parent = nullptr);

    // The dialogs ask these for a folder (tests replace them); empty means cancelled.
    std::function<QString()> askSaveFolder;
    std::function<QString()> askOpenFolder;
    // Asked before an opened project replaces the take there is; false holds the press back.
    std::function<bool()> mayReplaceTake;

    // Asks for a folder and saves the take there as a project; refused while recording.
    void chooseFolderAndSave();
    // Asks for a project folder and opens it, once the take there is may be replaced.
    void chooseFolderAndOpen();
    // While a recording runs, neither saves nor opens: the user is told to stop first.
    void setRecording(bool recording) { m_recording = recording; }

signals:
    // The project's rows and captions are in the grid and the editor; voiceMs is its voice's
    // length.
    void projectOpened(const QString& folder, qint64 voiceMs);
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

    EventGridModel& m_grid;
    CaptionTableModel& m_captions;
    QString m_voiceFileSpec;
    QString m_workFolder;
    QString m_projectsFolder;
    QPushButton* m_cmdSaveProject;
    QPushButton* m_cmdOpenProject;
    bool m_recording = false;
};

} // namespace cq
