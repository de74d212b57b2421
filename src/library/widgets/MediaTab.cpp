#include "library/widgets/MediaTab.h"

#include "library/FolderListing.h"
#include "platform/widgets/NamedButton.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStorageInfo>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace cq {

namespace {
const QString kUp = QStringLiteral("..");

// A heading of two lines at most. Its height does not follow its width, so that the grid of
// tabs keeps equal rows whatever the lists below it show.
class TabHeading : public QLabel {
public:
    using QLabel::QLabel;
    bool hasHeightForWidth() const override { return false; }
    QSize sizeHint() const override { return {1, 2 * fontMetrics().lineSpacing() + 2}; }
    QSize minimumSizeHint() const override { return sizeHint(); }
};
} // namespace

MediaTab::MediaTab(MediaTabId tab, const QString& heading, QWidget* parent)
    : QFrame(parent), m_tab(tab) {
    setObjectName(QStringLiteral("fraTab_%1").arg(TabIndex(tab)));
    setFrameShape(QFrame::StyledPanel);
    // Every tab gets the same share of the browser, whatever its lists hold.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setMinimumSize(110, 160);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(3);
    layout->addWidget(makeHeading(heading));

    m_body = new QVBoxLayout;
    m_body->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(m_body, 1);
    if (hasFolderPane()) {
        buildFolderPane(heading);
    } else {
        // Keeps the heading at the top until the text list arrives.
        m_bodyPlaceholder = new QWidget(this);
        m_body->addWidget(m_bodyPlaceholder, 1);
    }
    layout->addLayout(buildButtonRow());

    m_controls = new QVBoxLayout;
    m_controls->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(m_controls);
}

QLabel* MediaTab::makeHeading(const QString& heading) {
    m_heading = new TabHeading(heading, this);
    m_heading->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_heading->setObjectName(QStringLiteral("lblHeading_%1").arg(TabIndex(m_tab)));
    m_heading->setWordWrap(true);
    QFont bold = m_heading->font();
    bold.setBold(true);
    m_heading->setFont(bold);
    return m_heading;
}

// The drive, folder and file lists; only the file list shows until "View" is clicked.
void MediaTab::buildFolderPane(const QString& heading) {
    m_drive = new QComboBox(this);
    m_drive->setObjectName(QStringLiteral("Drive1_%1").arg(TabIndex(m_tab)));
    m_drive->setAccessibleName(QStringLiteral("Drive"));
    m_drive->setToolTip(QStringLiteral("Mounted volumes"));
    m_drive->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_drive->setMinimumContentsLength(6);
    fillDrives();
    connect(m_drive, &QComboBox::activated, this, &MediaTab::Drive1_Change);

    m_dir = new QListWidget(this);
    m_dir->setObjectName(QStringLiteral("Dir1_%1").arg(TabIndex(m_tab)));
    m_dir->setAccessibleName(QStringLiteral("Folders"));
    m_dir->setToolTip(QStringLiteral("Double-click a folder to open it"));
    connect(m_dir, &QListWidget::itemActivated, this, &MediaTab::onFolderActivated);

    buildFileList(heading);
    // Small minimums, so that showing the folder pane does not resize the browser's rows.
    m_file->setMinimumHeight(40);
    m_dir->setMinimumHeight(40);

    m_pathLabel = new QLabel(this);
    m_pathLabel->setObjectName(QStringLiteral("lblPath_%1").arg(TabIndex(m_tab)));
    m_pathLabel->setMinimumWidth(1);

    m_body->addWidget(m_drive);
    m_body->addWidget(m_pathLabel);
    m_body->addWidget(m_dir, 1);
    m_body->addWidget(m_file, 2);
    m_drive->hide();
    m_pathLabel->hide();
    m_dir->hide();
}

void MediaTab::buildFileList(const QString& heading) {
    m_file = new QListWidget(this);
    m_file->setObjectName(QStringLiteral("File1_%1").arg(TabIndex(m_tab)));
    m_file->setAccessibleName(heading + QStringLiteral(" files"));
    m_file->setUniformItemSizes(true); // large folders lay out without measuring each row
    // Several pictures may be picked (Ctrl/Shift) for a slide show of just those.
    m_file->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(m_file, &QListWidget::itemClicked, this, &MediaTab::onFileChosen);
    m_file->installEventFilter(this);
}

// "View", and the button that opens the folder in the file manager (tabs with a folder only).
QHBoxLayout* MediaTab::buildButtonRow() {
    auto* row = new QHBoxLayout;
    m_cmdView =
        NamedButton(QStringLiteral("View"), QStringLiteral("cmdView_%1").arg(TabIndex(m_tab)),
                    QStringLiteral("Change Directories"), this);
    connect(m_cmdView, &QPushButton::clicked, this, &MediaTab::cmdView_Click);
    row->addWidget(m_cmdView);
    if (hasFolderPane()) {
        m_cmdOpenFolder = new QPushButton(this);
        m_cmdOpenFolder->setObjectName(QStringLiteral("cmdOpenFolder_%1").arg(TabIndex(m_tab)));
        m_cmdOpenFolder->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
        m_cmdOpenFolder->setAccessibleName(QStringLiteral("Open Folder"));
        m_cmdOpenFolder->setToolTip(
            QStringLiteral("Open the File Manager Folder to this Directory"));
        connect(m_cmdOpenFolder, &QPushButton::clicked, this, &MediaTab::cmdOpenFolder_Click);
        row->addWidget(m_cmdOpenFolder);
        m_cmdOpenFolder->hide();
    } else {
        m_cmdView->hide();
    }
    row->addStretch(1);
    return row;
}

void MediaTab::fillDrives() {
    const QString home = QDir::homePath();
    m_drive->addItem(home, home);
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady())
            continue;
        const QString root = volume.rootPath();
        if (m_drive->findData(root) < 0)
            m_drive->addItem(root, root);
    }
}

void MediaTab::selectDriveFor(const QString& path) {
    // The drive is the longest volume root that holds the folder; the home folder counts first.
    int best = -1;
    qsizetype bestLength = -1;
    for (int i = 0; i < m_drive->count(); ++i) {
        const QString root = m_drive->itemData(i).toString();
        const bool holds =
            path == root || path.startsWith(root.endsWith(u'/') ? root : root + u'/');
        if (holds && root.size() > bestLength) {
            best = i;
            bestLength = root.size();
        }
    }
    if (best >= 0)
        m_drive->setCurrentIndex(best);
}

QStringList MediaTab::entries() const {
    QStringList names;
    if (!m_file)
        return names;
    names.reserve(m_file->count());
    for (int i = 0; i < m_file->count(); ++i)
        names.append(m_file->item(i)->text());
    return names;
}

void MediaTab::setListPointSize(double pointSize) {
    for (QWidget* list : {static_cast<QWidget*>(m_drive), static_cast<QWidget*>(m_dir),
                          static_cast<QWidget*>(m_file)}) {
        if (!list)
            continue;
        QFont font = list->font();
        font.setPointSizeF(pointSize);
        list->setFont(font);
    }
}

QList<int> MediaTab::selectedRows() const {
    QList<int> rows;
    if (!m_file)
        return rows;
    for (const QModelIndex& index : m_file->selectionModel()->selectedIndexes())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

QString MediaTab::selectedEntry() const {
    return m_file && m_file->currentItem() && m_file->currentItem()->isSelected()
               ? m_file->currentItem()->text()
               : QString();
}

bool MediaTab::showFolder(const QString& path) {
    if (!hasFolderPane() || !IsReadableFolder(path))
        return false;
    const QString folder = QDir(path).absolutePath();
    m_path = folder;
    listFolder(folder);
    selectDriveFor(folder);
    emit folderChanged(m_tab, folder);
    return true;
}

void MediaTab::listFolder(const QString& folder) {
    m_dir->clear();
    if (ParentFolder(folder) != folder)
        m_dir->addItem(kUp);
    m_dir->addItems(ListSubfolders(folder));
    m_file->clear();
    m_file->addItems(ListMediaFiles(folder));
    // Lists do not pass their tooltip on to screen readers by themselves.
    for (QListWidget* list : {m_file, m_dir}) {
        list->setToolTip(folder);
        list->setAccessibleDescription(folder);
    }
    m_pathLabel->setText(QDir(folder).dirName().isEmpty() ? folder : QDir(folder).dirName());
    m_pathLabel->setToolTip(folder);
}

void MediaTab::refreshFiles() {
    if (!hasFolderPane() || !IsReadableFolder(m_path))
        return;
    const QString selected = m_file->currentItem() ? m_file->currentItem()->text() : QString();
    m_file->clear();
    m_file->addItems(ListMediaFiles(m_path));
    if (!selected.isEmpty()) {
        const QList<QListWidgetItem*> found = m_file->findItems(selected, Qt::MatchExactly);
        if (!found.isEmpty())
            m_file->setCurrentItem(found.first());
    }
}

void MediaTab::Drive1_Change(int driveIndex) {
    if (driveIndex >= 0)
        Dir1_Change(m_drive->itemData(driveIndex).toString());
}

void MediaTab::Dir1_Change(const QString& path) {
    showFolder(path);
}

void MediaTab::onFileChosen(QListWidgetItem* item) {
    if (item)
        emit fileClicked(m_tab, JoinPath(m_path, item->text()));
}

bool MediaTab::eventFilter(QObject* watched, QEvent* event) {
    // Enter on the file list is the keyboard's click.
    if (watched == m_file && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            onFileChosen(m_file->currentItem());
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

void MediaTab::onFolderActivated(QListWidgetItem* item) {
    if (!item)
        return;
    const QString name = item->text();
    Dir1_Change(name == kUp ? ParentFolder(m_path) : JoinPath(m_path, name));
}

void MediaTab::cmdView_Click() {
    if (!hasFolderPane())
        return;
    m_folderPaneShown = !m_folderPaneShown;
    const bool shown = m_folderPaneShown;
    m_drive->setVisible(shown);
    m_pathLabel->setVisible(shown);
    m_dir->setVisible(shown);
    m_cmdOpenFolder->setVisible(shown);
}

void MediaTab::cmdOpenFolder_Click() {
    if (!m_path.isEmpty())
        QDesktopServices::openUrl(QUrl::fromLocalFile(m_path));
}

void MediaTab::setBodyWidget(QWidget* widget) {
    delete m_bodyPlaceholder;
    m_bodyPlaceholder = nullptr;
    widget->setParent(this);
    m_body->addWidget(widget, 1);
}

void MediaTab::setControls(QWidget* controls) {
    controls->setParent(this);
    m_controls->addWidget(controls);
}

} // namespace cq
