#include "app/widgets/frmClipquill.h"

#include "Version.h"
#include "app/widgets/KeepAwake.h"
#include "library/playback/MasterVolume.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/PlayerControls.h"
#include "library/playback/widgets/PlayerTransport.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "library/playback/widgets/VolumeLevelsPanel.h"
#include "platform/Folders.h"
#include "text/widgets/SpeechVoice.h"
#include "text/widgets/TextDisplaySurface.h"
#include "text/widgets/TextFrame.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
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
    m_vox = new SpeechVoice(QString(), this);
    buildLayout();
    buildMediaPlayers();
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

    m_displayPlace = new QStackedWidget(m_splitter);
    m_displayPlace->setObjectName(QStringLiteral("displayPlace"));
    m_displayPlace->setStyleSheet(QStringLiteral("background: black;"));
    m_splash = new QLabel(m_displayPlace);
    m_splash->setObjectName(QStringLiteral("WebBrowserDisplayPic"));
    m_splash->setAlignment(Qt::AlignCenter);
    m_splash->setAccessibleName(QStringLiteral("Picture display"));
    const QPixmap splash(m_paths.splashPictureFileSpec);
    if (!splash.isNull())
        m_splash->setPixmap(splash);
    m_displayPlace->addWidget(m_splash);
    m_splitter->addWidget(m_mediaArea);
    m_splitter->addWidget(m_displayPlace);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    outer->addWidget(m_splitter, 1);

    setCentralWidget(central);
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect avail = screen->availableGeometry();
        resize(std::min(1280, avail.width() * 9 / 10), std::min(820, avail.height() * 9 / 10));
    }
}

// The players, the text list and the volume controls; the media browser places them in its tabs.
void frmClipquill::buildMediaPlayers() {
    m_RecordedAudioPlayBackWMP = new MediaPlayer(this);
    for (int i = 1; i < 8; ++i)
        if (i != PlayerControls::kTextAndSpeechIndex && i != PlayerControls::kUndrivenSliderIndex)
            m_WMPAudio[i] = new MediaPlayer(this);
    m_masterVolume = new MasterVolume(this);
    m_WindowsMediaPlayer1 = new VideoPlayerWidget(m_displayPlace);
    m_picDisplay = new TextDisplaySurface(m_displayPlace);
    m_displayPlace->addWidget(m_WindowsMediaPlayer1);
    m_displayPlace->addWidget(m_picDisplay);
    m_fraText = new TextFrame(m_studio, m_vox, m_paths.textListFileSpec, m_textList, m_mediaArea);
    connect(m_fraText, &TextFrame::listChanged, this,
            [this] { m_textList = m_fraText->entries(); });
    m_volumeLevels = new VolumeLevelsPanel(m_RecordedAudioPlayBackWMP, m_masterVolume, m_mediaArea);
    // The replayed voice ends: the video shown with it stops too.
    connect(m_RecordedAudioPlayBackWMP, &MediaPlayer::playStateChange, this, [this](int state) {
        if (state == static_cast<int>(PlayState::Stopped))
            m_WindowsMediaPlayer1->player()->stop();
    });
    m_videoTransport = new PlayerTransport(m_WindowsMediaPlayer1->player(), m_mediaArea);
    m_mediaArea->layout()->addWidget(m_fraText);
    m_mediaArea->layout()->addWidget(m_videoTransport);
    m_mediaArea->layout()->addWidget(m_volumeLevels);
}

MediaPlayer* frmClipquill::WMPAudio(int index) const {
    if (index == 0)
        return m_WindowsMediaPlayer1->player();
    return index > 0 && index < 8 ? m_WMPAudio[index] : nullptr;
}

PlayerControls* frmClipquill::createPlayerControls(int index, QWidget* parent) {
    auto* controls = new PlayerControls(index, WMPAudio(index), parent);
    connect(controls, &PlayerControls::stopSpeechRequested, this, &frmClipquill::StopSpeaking);
    connect(controls, &PlayerControls::playerClicked, this,
            [this](int i) { m_lastAudioPlayerIndex = i; });
    return controls;
}

void frmClipquill::SpeakText() {
    m_vox->SpeakText(m_studio.gstrCurrentText);
}

void frmClipquill::StopSpeaking() {
    m_vox->StopSpeaking();
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
