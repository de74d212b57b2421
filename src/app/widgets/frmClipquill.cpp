#include "app/widgets/frmClipquill.h"

#include "Version.h"
#include "app/widgets/KeepAwake.h"
#include "library/MediaTyping.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "platform/Folders.h"
#include "render/ToolLocator.h"
#include "share/widgets/SharePanel.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

namespace cq {

namespace {
const QStringList kVideoSizes{QStringLiteral("160X120"), QStringLiteral("176X144"),
                              QStringLiteral("320X240"), QStringLiteral("352X288"),
                              QStringLiteral("480X320"), QStringLiteral("640X480"),
                              QStringLiteral("800X600")};
} // namespace

QString frmClipquill::windowTitleText() {
    return QStringLiteral("Clipquill v.%1.%2.%3")
        .arg(kVersionMajor)
        .arg(kVersionMinor)
        .arg(kVersionRevision, 3, 10, QChar(u'0'));
}

frmClipquill::frmClipquill(WindowlessStartup startup, QWidget* parent)
    : QMainWindow(parent), m_paths(std::move(startup.paths)),
      m_settings(std::move(startup.settings)), m_textList(std::move(startup.textList)),
      m_startupProblems(std::move(startup.problems)) {
    setObjectName(QStringLiteral("frmClipquill"));
    m_wait = new WaitTimer(this);
    m_keepAwake = new KeepAwake(this);
    buildLayout();
    setWindowTitle(windowTitleText());
    if (!m_startupProblems.isEmpty())
        QTimer::singleShot(0, this, &frmClipquill::showStartupProblems);
}

frmClipquill::~frmClipquill() = default;

void frmClipquill::buildLayout() {
    auto* central = new QWidget(this);
    auto* outer = new QVBoxLayout(central);

    m_topBar = new QHBoxLayout;
    auto* sizeLabel = new QLabel(QStringLiteral("Video size:"), central);
    m_cboVideoRes = new QComboBox(central);
    m_cboVideoRes->setObjectName(QStringLiteral("cboVideoRes"));
    m_cboVideoRes->setEditable(true);
    m_cboVideoRes->addItems(kVideoSizes);
    m_cboVideoRes->setCurrentText(m_studio.gstrVideoRes);
    m_cboVideoRes->setToolTip(QStringLiteral("Frame size of the rendered video"));
    m_cboVideoRes->setAccessibleName(QStringLiteral("Video size"));
    sizeLabel->setBuddy(m_cboVideoRes);
    connect(m_cboVideoRes, &QComboBox::currentTextChanged, this, &frmClipquill::cboVideoRes_Change);

    m_cmdSaveDirectories = new QPushButton(QStringLiteral("Save Directory Settings"), central);
    m_cmdSaveDirectories->setObjectName(QStringLiteral("cmdSaveDirectories"));
    m_cmdSaveDirectories->setToolTip(
        QStringLiteral("Remember the folders of the media tabs for the next start"));
    connect(m_cmdSaveDirectories, &QPushButton::clicked, this,
            &frmClipquill::cmdSaveDirectories_Click);

    m_topBar->addWidget(sizeLabel);
    m_topBar->addWidget(m_cboVideoRes);
    m_topBar->addStretch(1);
    m_topBar->addWidget(m_cmdSaveDirectories);
    outer->addLayout(m_topBar);

    m_splitter = new QSplitter(Qt::Horizontal, central);
    m_mediaArea = new QWidget(m_splitter);
    m_mediaArea->setObjectName(QStringLiteral("fraMediaArea"));
    auto* mediaLayout = new QVBoxLayout(m_mediaArea);
    mediaLayout->setContentsMargins(0, 0, 0, 0);

    m_mediaBrowser = new MediaBrowser(m_paths, m_settings,
                                      LocateConvert(m_paths.gstrImageMagickFileSpec), m_mediaArea);
    mediaLayout->addWidget(m_mediaBrowser);
    m_displayPlace = new DisplayPlace(m_paths, m_splitter);
    m_splitter->addWidget(m_mediaArea);
    m_splitter->addWidget(m_displayPlace);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    outer->addWidget(m_splitter, 1);

    m_sharePanel = new SharePanel(m_paths, m_settings, central);
    outer->addWidget(m_sharePanel);

    setCentralWidget(central);
    wireMediaLibrary();
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect avail = screen->availableGeometry();
        resize(std::min(1280, avail.width() * 9 / 10), std::min(820, avail.height() * 9 / 10));
    }
}

void frmClipquill::wireMediaLibrary() {
    // Until the media click of the timeline takes these over, a picture shows on a click.
    connect(m_mediaBrowser, &MediaBrowser::fileClicked, this, [this](int, const QString& file) {
        if (GetMediaTypeFromFileSpec(file) == QStringLiteral("Pictures"))
            m_displayPlace->MakeHTMLPageForPicture(file);
    });
    connect(m_mediaBrowser, &MediaBrowser::pictureClicked, m_displayPlace,
            &DisplayPlace::MakeHTMLPageForPicture);
    connect(m_displayPlace, &DisplayPlace::viewPicsClicked, m_mediaBrowser,
            &MediaBrowser::cmdViewPics_Click);
    m_mediaBrowser->pointFoldersAtSettings();
}

void frmClipquill::cboVideoRes_Change(const QString& text) {
    m_studio.gstrVideoRes = text;
}

void frmClipquill::cmdSaveDirectories_Click() {
    if (!m_settings.SaveDirectoriesToFile(m_paths.gstrClipquillSetupFileSpec))
        QMessageBox::warning(this, QStringLiteral("Save Directory Settings"),
                             QStringLiteral("The settings could not be written to \"%1\".")
                                 .arg(m_paths.gstrClipquillSetupFileSpec));
}

void frmClipquill::showStartupProblems() {
    QMessageBox::warning(this, windowTitleText(), m_startupProblems.join(u'\n'));
}

void frmClipquill::closeEvent(QCloseEvent* event) {
    Form_Unload();
    QMainWindow::closeEvent(event);
}

void frmClipquill::Form_Unload() {
    DeleteFilesInFolder(m_paths.gstrTempFilesDirectory);
}

} // namespace cq
