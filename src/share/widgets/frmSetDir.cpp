#include "share/widgets/frmSetDir.h"

#include "platform/Folders.h"
#include "platform/widgets/NamedButton.h"
#include "share/SaveCopy.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStorageInfo>
#include <QVBoxLayout>

namespace cq {

namespace {
constexpr int kFolderRole = Qt::UserRole + 1;
}

frmSetDir::frmSetDir(const QString& chosenFolder, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSetDir"));
    setWindowTitle(QStringLiteral("Select Directory"));
    setModal(true);

    auto* outer = new QVBoxLayout(this);
    m_drive1 = new QComboBox(this);
    m_drive1->setObjectName(QStringLiteral("Drive1"));
    m_drive1->setToolTip(QStringLiteral("The home folder or a mounted volume."));
    m_drive1->setAccessibleName(QStringLiteral("Drive"));
    fillDrives();
    outer->addWidget(m_drive1);

    m_lblPath = new QLabel(this);
    m_lblPath->setObjectName(QStringLiteral("lblPath"));
    m_lblPath->setWordWrap(true);
    m_lblPath->setTextInteractionFlags(Qt::TextSelectableByMouse);
    outer->addWidget(m_lblPath);

    m_dir1 = new QListWidget(this);
    m_dir1->setObjectName(QStringLiteral("Dir1"));
    m_dir1->setToolTip(QStringLiteral("Double-click a folder to open it; \"..\" goes up."));
    m_dir1->setAccessibleName(QStringLiteral("Folders"));
    outer->addWidget(m_dir1, 1);

    outer->addLayout(buildButtons());

    connect(m_drive1, &QComboBox::activated, this, &frmSetDir::Drive1_Change);
    connect(m_dir1, &QListWidget::itemActivated, this, &frmSetDir::Dir1_Open);
    connect(m_cmdNewFolder, &QPushButton::clicked, this, &frmSetDir::cmdNewFolder_Click);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmSetDir::cmdOK_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &frmSetDir::cmdCancel_Click);
    // Escape and the window's close button leave the same way as Cancel.
    connect(this, &QDialog::rejected, this, [this] { m_cancelled = true; });

    // Form_Load
    QString start = TrimChosenFolder(chosenFolder.trimmed());
    if (start.isEmpty() || !QFileInfo(start).isDir())
        start = QDir::homePath();
    m_chosenFolder = start;
    setPath(start);
    resize(460, 420);
}

void frmSetDir::fillDrives() {
    m_drive1->addItem(QStringLiteral("Home (%1)").arg(QDir::homePath()), QDir::homePath());
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady())
            continue;
        const QString root = volume.rootPath();
        // Kernel and runtime file systems hold nothing a user saves to.
        if (root.startsWith(u"/proc") || root.startsWith(u"/sys") || root.startsWith(u"/dev") ||
            root.startsWith(u"/run"))
            continue;
        const QString label = volume.displayName() == root
                                  ? root
                                  : QStringLiteral("%1 (%2)").arg(volume.displayName(), root);
        m_drive1->addItem(label, root);
    }
}

QHBoxLayout* frmSetDir::buildButtons() {
    auto* row = new QHBoxLayout;
    m_cmdNewFolder = NamedButton(QStringLiteral("New Folder"), QStringLiteral("cmdNewFolder"),
                                 QStringLiteral("Make a new folder inside the current one."), this);
    row->addWidget(m_cmdNewFolder);
    row->addStretch(1);
    m_cmdOK = NamedButton(QStringLiteral("OK"), QStringLiteral("cmdOK"),
                          QStringLiteral("Use the current folder."), this);
    m_cmdOK->setDefault(true);
    row->addWidget(m_cmdOK);
    m_cmdCancel = NamedButton(QStringLiteral("Cancel"), QStringLiteral("cmdCancel"),
                              QStringLiteral("Close without choosing a folder."), this);
    row->addWidget(m_cmdCancel);
    return row;
}

void frmSetDir::selectDriveFor(const QString& folder) {
    // The volume whose root is the longest start of the folder; home counts as a volume.
    int best = -1;
    qsizetype bestLength = -1;
    for (int i = 0; i < m_drive1->count(); ++i) {
        const QString root = m_drive1->itemData(i).toString();
        const bool inside = folder == root || root == u"/" || folder.startsWith(root + u'/');
        if (inside && root.size() > bestLength) {
            best = i;
            bestLength = root.size();
        }
    }
    if (best >= 0)
        m_drive1->setCurrentIndex(best);
}

void frmSetDir::setPath(const QString& folder) {
    const QString clean = TrimChosenFolder(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()));
    if (!QFileInfo(clean).isDir())
        return;
    m_path = clean;
    m_lblPath->setText(m_path);
    selectDriveFor(m_path);
    m_dir1->clear();
    QDir dir(m_path);
    if (!dir.isRoot()) {
        auto* up = new QListWidgetItem(QStringLiteral(".."), m_dir1);
        up->setData(kFolderRole, QFileInfo(m_path).path());
    }
    const QFileInfoList children =
        dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& child : children) {
        auto* item = new QListWidgetItem(child.fileName(), m_dir1);
        item->setData(kFolderRole, child.absoluteFilePath());
    }
}

void frmSetDir::Drive1_Change(int index) {
    setPath(m_drive1->itemData(index).toString());
}

void frmSetDir::Dir1_Open(QListWidgetItem* item) {
    if (item)
        setPath(item->data(kFolderRole).toString());
}

bool frmSetDir::makeNewFolder(const QString& name) {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return false;
    const QString problem = SaveNameProblem(trimmed);
    if (!problem.isEmpty()) {
        QMessageBox::warning(this, windowTitle(), problem);
        return false;
    }
    const QString folder = (m_path == u"/" ? m_path : m_path + u'/') + trimmed;
    if (!MakeFolderPath(folder)) {
        QMessageBox::warning(this, windowTitle(),
                             QStringLiteral("The folder \"%1\" could not be made.").arg(folder));
        return false;
    }
    setPath(folder);
    return true;
}

void frmSetDir::cmdNewFolder_Click() {
    bool ok = false;
    const QString name = QInputDialog::getText(this, QStringLiteral("New Folder"),
                                               QStringLiteral("Enter New Folder Name: "),
                                               QLineEdit::Normal, QString(), &ok);
    if (ok)
        makeNewFolder(name);
}

void frmSetDir::cmdOK_Click() {
    // A selected (not yet opened) folder is the one the user means.
    if (QListWidgetItem* item = m_dir1->currentItem();
        item && item->isSelected() && item->text() != u"..")
        setPath(item->data(kFolderRole).toString());
    m_chosenFolder = TrimChosenFolder(m_path);
    m_cancelled = false;
    accept();
}

void frmSetDir::cmdCancel_Click() {
    m_cancelled = true;
    reject();
}

} // namespace cq
