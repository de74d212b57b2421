#pragma once

#include <QDialog>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace cq {

// Chooses a folder: a volume (the home folder first, then the mounted volumes), then a folder
// on it; "New Folder" makes one inside the current folder.
class frmSetDir : public QDialog {
    Q_OBJECT
public:
    explicit frmSetDir(const QString& chosenFolder, QWidget* parent = nullptr);

    QString chosenFolder() const { return m_chosenFolder; }
    bool cancelled() const { return m_cancelled; }

    QString path() const { return m_path; } // Dir1's current folder
    void setPath(const QString& folder);
    // Makes the folder inside the current one and moves into it; false when it failed (said).
    bool makeNewFolder(const QString& name);

private:
    void Drive1_Change(int index);
    void Dir1_Open(QListWidgetItem* item);
    void cmdNewFolder_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void selectDriveFor(const QString& folder);
    // The home folder, then every mounted volume a user may save to.
    void fillDrives();
    QHBoxLayout* buildButtons();

    QString m_chosenFolder;
    bool m_cancelled = false;
    QString m_path;

    QComboBox* m_drive1 = nullptr;
    QLabel* m_lblPath = nullptr;
    QListWidget* m_dir1 = nullptr;
    QPushButton* m_cmdNewFolder = nullptr;
    QPushButton* m_cmdOK = nullptr;
    QPushButton* m_cmdCancel = nullptr;
};

} // namespace cq
