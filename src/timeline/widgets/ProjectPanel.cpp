#include "timeline/widgets/ProjectPanel.h"

#include "captions/CaptionTableModel.h"
#include "platform/Folders.h"
#include "platform/widgets/NamedButton.h"
#include "timeline/EventGridModel.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QPushButton>

namespace cq {

namespace {
const QString kSaveTitle = QStringLiteral("Save Project");
const QString kOpenTitle = QStringLiteral("Open Project");
} // namespace

ProjectPanel::ProjectPanel(EventGridModel& grid, CaptionTableModel& captions, QString voiceFileSpec,
                           QString workFolder, QString projectsFolder, QWidget* parent)
    : QWidget(parent), m_grid(grid), m_captions(captions),
      m_voiceFileSpec(std::move(voiceFileSpec)), m_workFolder(std::move(workFolder)),
      m_projectsFolder(std::move(projectsFolder)) {
    setObjectName(QStringLiteral("ProjectPanel"));
    m_cmdSaveProject = NamedButton(
        kSaveTitle, QStringLiteral("cmdSaveProject"),
        QStringLiteral("Keep the recorded voice and its events in a project folder"), this);
    m_cmdOpenProject =
        NamedButton(kOpenTitle, QStringLiteral("cmdOpenProject"),
                    QStringLiteral("Bring back a saved recording to replay or render it"), this);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_cmdSaveProject);
    layout->addWidget(m_cmdOpenProject);

    askSaveFolder = [this] {
        MakeFolderPath(m_projectsFolder);
        return QFileDialog::getSaveFileName(this, kSaveTitle, defaultSaveFolder(), QString(),
                                            nullptr, QFileDialog::DontConfirmOverwrite);
    };
    askOpenFolder = [this] {
        return QFileDialog::getExistingDirectory(this, kOpenTitle, m_projectsFolder);
    };
    connect(m_cmdSaveProject, &QPushButton::clicked, this, &ProjectPanel::cmdSaveProject_Click);
    connect(m_cmdOpenProject, &QPushButton::clicked, this, &ProjectPanel::cmdOpenProject_Click);
}

QString ProjectPanel::defaultSaveFolder() const {
    return QDir(m_projectsFolder)
        .filePath(QStringLiteral("Project ") +
                  QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh.mm")));
}

bool ProjectPanel::refuseWhileRecording(const QString& title) {
    if (!m_recording)
        return false;
    QMessageBox::information(this, title, QStringLiteral("Press Stop to end the recording first."));
    return true;
}

bool ProjectPanel::mayReplaceProjectIn(const QString& folder) {
    return !IsProjectFolder(folder) ||
           QMessageBox::question(
               this, kSaveTitle,
               QStringLiteral("\"%1\" already holds a project. Replace it?").arg(folder)) ==
               QMessageBox::Yes;
}

void ProjectPanel::cmdSaveProject_Click() {
    chooseFolderAndSave();
}

void ProjectPanel::cmdOpenProject_Click() {
    chooseFolderAndOpen();
}

void ProjectPanel::chooseFolderAndSave() {
    if (refuseWhileRecording(kSaveTitle))
        return;
    const QString folder = askSaveFolder ? askSaveFolder() : QString();
    if (!folder.isEmpty() && mayReplaceProjectIn(folder))
        saveProject(folder);
}

void ProjectPanel::chooseFolderAndOpen() {
    if (refuseWhileRecording(kOpenTitle) || (mayReplaceTake && !mayReplaceTake()))
        return;
    const QString folder = askOpenFolder ? askOpenFolder() : QString();
    if (!folder.isEmpty())
        openProject(folder);
}

void ProjectPanel::saveProject(const QString& folder) {
    const ProjectResult result =
        SaveProject(folder, m_grid.rows(), m_voiceFileSpec, m_workFolder, m_captions.cues());
    if (!result.ok()) {
        QMessageBox::warning(this, kSaveTitle, result.error);
        return;
    }
    emit projectSaved(folder);
    QStringList notes;
    if (!result.missingFiles.isEmpty())
        notes << QStringLiteral("The project was saved, but these files were missing:\n%1")
                     .arg(result.missingFiles.join(u'\n'));
    if (!result.notice.isEmpty())
        notes << result.notice;
    if (!notes.isEmpty())
        QMessageBox::information(this, kSaveTitle, notes.join(QStringLiteral("\n\n")));
}

void ProjectPanel::openProject(const QString& folder) {
    const ProjectResult result = OpenProject(folder, m_voiceFileSpec, m_workFolder);
    if (!result.ok()) {
        QMessageBox::warning(
            this, kOpenTitle,
            QStringLiteral("The project could not be opened.\n%1").arg(result.error));
        return;
    }
    m_grid.setRows(result.rows);
    m_captions.loadCues(result.captions);
    emit projectOpened(folder, qMax<qint64>(result.voiceMs, 0));
    QStringList problems;
    if (!result.missingFiles.isEmpty())
        problems << QStringLiteral("These files are missing and will show nothing:\n%1")
                        .arg(result.missingFiles.join(u'\n'));
    if (!result.captionsProblem.isEmpty())
        problems
            << QStringLiteral("Not all captions could be read: %1").arg(result.captionsProblem);
    if (!problems.isEmpty())
        QMessageBox::warning(this, kOpenTitle,
                             QStringLiteral("The project was opened, but not all of it.\n%1")
                                 .arg(problems.join(QStringLiteral("\n\n"))));
}

} // namespace cq
