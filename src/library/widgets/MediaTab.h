#pragma once

#include "library/MediaTabs.h"

#include <QFrame>
#include <QString>
#include <QStringList>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QVBoxLayout;

namespace cq {

// One tab of the media browser: its heading, the drive, folder and file lists over one folder,
// the "View" button that shows or hides the folder pane, and the button that opens the folder in
// the desktop's file manager. The text tab has no folder pane: it holds the text list instead.
class MediaTab : public QFrame {
    Q_OBJECT
public:
    MediaTab(MediaTabId tab, const QString& heading, QWidget* parent = nullptr);

    MediaTabId id() const { return m_tab; }
    bool hasFolderPane() const { return m_tab != MediaTabId::TextAndSpeech; }
    QString path() const { return m_path; }
    QStringList entries() const;
    // The rows picked in the file list, in list order, and the entry that has the focus.
    QList<int> selectedRows() const;
    QString selectedEntry() const;

    // Points the lists at a folder. A folder that does not exist or cannot be read leaves every
    // list as it was and returns false.
    bool showFolder(const QString& path);
    // Lists the current folder again, keeping the selected file.
    void refreshFiles();
    void Drive1_Change(int driveIndex);
    void Dir1_Change(const QString& path);
    void cmdView_Click();
    void cmdOpenFolder_Click();

    // The frame of the text list and the tab's playback controls are made elsewhere.
    void setBodyWidget(QWidget* widget);
    // The drive, folder and file lists follow the text list's font size.
    void setListPointSize(double pointSize);
    void setControls(QWidget* controls);

signals:
    void fileClicked(cq::MediaTabId tab, const QString& fileSpec);
    void folderChanged(cq::MediaTabId tab, const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Fills the folder and file lists with what the folder holds.
    void listFolder(const QString& folder);
    QLabel* makeHeading(const QString& heading);
    void buildFolderPane(const QString& heading);
    void buildFileList(const QString& heading);
    QHBoxLayout* buildButtonRow();
    void onFileChosen(QListWidgetItem* item);
    void fillDrives();
    void selectDriveFor(const QString& path);
    void onFolderActivated(QListWidgetItem* item);

    MediaTabId m_tab;
    bool m_folderPaneShown = false;
    QString m_path;
    QLabel* m_heading = nullptr;
    QComboBox* m_drive = nullptr;
    QLabel* m_pathLabel = nullptr; // the name of the folder shown
    QListWidget* m_dir = nullptr;
    QListWidget* m_file = nullptr;
    QPushButton* m_cmdView = nullptr;
    QPushButton* m_cmdOpenFolder = nullptr;
    QVBoxLayout* m_body = nullptr;
    QWidget* m_bodyPlaceholder = nullptr;
    QVBoxLayout* m_controls = nullptr;
};

} // namespace cq
