#include "app/widgets/frmClipquill.h"

#include "app/StudioCaptions.h"
#include "app/StudioOptions.h"
#include "app/StudioRender.h"
#include "app/widgets/CaptionMaking.h"
#include "app/widgets/KeepAwake.h"
#include "app/widgets/MediaStation.h"
#include "app/widgets/StudioDisplay.h"
#include "app/widgets/TabPictureList.h"
#include "app/widgets/TimelineStudio.h"
#include "captions/CaptionTableModel.h"
#include "captions/widgets/CaptionPanel.h"
#include "library/playback/MediaPlayer.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "platform/Folders.h"
#include "platform/ToolPool.h"
#include "platform/widgets/NamedButton.h"
#include "render/RenderJob.h"
#include "render/widgets/RenderPanel.h"
#include "share/widgets/SharePanel.h"
#include "studio/FinalMix.h"
#include "take/RecordingController.h"
#include "take/TakeKeeper.h"
#include "take/widgets/RecordingPanel.h"
#include "take/widgets/TakeQuestions.h"
#include "timeline/EventGridModel.h"
#include "timeline/widgets/EventGridView.h"
#include "timeline/widgets/ProjectPanel.h"
#include "timeline/widgets/SlideShowPanel.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

namespace cq {

namespace {
const QStringList kVideoSizes{QStringLiteral("160X120"), QStringLiteral("176X144"),
                              QStringLiteral("320X240"), QStringLiteral("352X288"),
                              QStringLiteral("480X320"), QStringLiteral("640X480"),
                              QStringLiteral("800X600"),
                              // Today's screens; typing them was left to the few who knew.
                              QStringLiteral("1280X720"), QStringLiteral("1920X1080")};
} // namespace

QString frmClipquill::windowTitleText() {
    return StudioVersionText();
}

frmClipquill::frmClipquill(WindowlessStartup startup, QWidget* parent)
    : QMainWindow(parent), m_paths(std::move(startup.paths)),
      m_settings(std::move(startup.settings)), m_textList(std::move(startup.textList)),
      m_startupProblems(std::move(startup.problems)) {
    setObjectName(QStringLiteral("frmClipquill"));
    m_keepAwake = new KeepAwake(this);
    m_toolPool = new ToolPool(QThread::idealThreadCount(), this);
    buildLayout();
    setWindowTitle(windowTitleText());
    QTimer::singleShot(0, m_timeline, &TimelineStudio::checkInputDevice);
    QTimer::singleShot(0, &m_timeline->takeQuestions(), &TakeQuestions::offerLeftTake);
    if (!m_startupProblems.isEmpty())
        QTimer::singleShot(0, this, &frmClipquill::showStartupProblems);
}

frmClipquill::~frmClipquill() = default;

void frmClipquill::buildLayout() {
    auto* central = new QWidget(this);
    auto* outer = new QVBoxLayout(central);

    buildTopBar(central);
    outer->addLayout(m_topBar);

    m_splitter = new QSplitter(Qt::Horizontal, central);
    m_mediaArea = new QWidget(m_splitter);
    m_mediaArea->setObjectName(QStringLiteral("fraMediaArea"));
    auto* mediaLayout = new QVBoxLayout(m_mediaArea);
    mediaLayout->setContentsMargins(0, 0, 0, 0);
    // The display place on top and the event grid under it, when the grid is shown.
    m_displayColumn = new QSplitter(Qt::Vertical, m_splitter);
    m_media = new MediaStation(m_paths, m_settings, m_studio, m_textList, *m_toolPool, m_mediaArea,
                               m_displayColumn);
    m_display = new StudioDisplay(*m_media, m_studio, this);
    outer->addLayout(buildTimeline(central));
    m_display->connectTimeline(m_timeline->clicks(), m_timeline->logger());
    connectRender();

    m_displayColumn->addWidget(&m_media->displayPlace());
    m_displayColumn->addWidget(buildEventsAndCaptions());
    m_displayColumn->setStretchFactor(0, 3);
    m_displayColumn->setStretchFactor(1, 2);
    m_splitter->addWidget(m_mediaArea);
    m_splitter->addWidget(m_displayColumn);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    outer->addWidget(m_splitter, 1);

    m_sharePanel = new SharePanel(m_paths, m_settings, central);
    m_sharePanel->setEventCountProvider([this] { return m_timeline->grid().rowCount(); });
    outer->addWidget(m_sharePanel);

    setCentralWidget(central);
    buildStatusBar();
}

// The frame size, the format and captions of the result, the render controls and the button
// that keeps the folders.
void frmClipquill::buildTopBar(QWidget* central) {
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
    addFormatChoice(central);
    m_renderPanel = new RenderPanel(m_paths, m_studio, *m_toolPool, central);
    // What the result is made of, then the render and the voice's treatment.
    m_topBar->addWidget(m_renderPanel->captionOptions());
    m_topBar->addSpacing(12);
    m_topBar->addWidget(m_renderPanel);
    m_topBar->addStretch(1);
    m_topBar->addWidget(m_cmdSaveDirectories);
}

void frmClipquill::buildStatusBar() {
    // Where the last render went, for the user to find it outside the studio too.
    m_lblStatus = new QLabel(this);
    m_lblStatus->setObjectName(QStringLiteral("lblStatus"));
    m_lblStatus->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_lblStatus->setAccessibleName(QStringLiteral("Status"));
    statusBar()->addWidget(m_lblStatus, 1);
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect avail = screen->availableGeometry();
        resize(std::min(1280, avail.width() * 9 / 10), std::min(820, avail.height() * 9 / 10));
    }
}

QLayout* frmClipquill::buildTimeline(QWidget* central) {
    m_pictureList =
        std::make_unique<TabPictureList>(*m_media->mediaBrowser().tab(MediaTabId::Pictures));
    m_timeline = new TimelineStudio({m_paths, m_settings, central, *m_display,
                                     m_media->RecordedAudioPlayBackWMP(), m_pictureList.get()},
                                    this);
    connect(m_timeline, &TimelineStudio::stopPressed, this,
            [this] { m_keepAwake->tmrMoveMouseToPreventScreenSaver().stop(); });
    m_cmdCaptions =
        NamedButton(QStringLiteral("Edit Captions"), QStringLiteral("cmdCaptions"),
                    QStringLiteral("Show or hide the captions of the message"), central);
    m_cmdCaptions->setAccessibleName(m_cmdCaptions->text());
    m_cmdCaptions->setAccessibleDescription(m_cmdCaptions->toolTip());
    auto* bar = new QHBoxLayout;
    bar->addWidget(m_timeline->recordingPanel());
    bar->addWidget(m_cmdCaptions);
    bar->addSpacing(24);
    bar->addWidget(m_timeline->slideShowPanel());
    bar->addStretch(1);
    bar->addWidget(m_timeline->projectPanel());
    return bar;
}

QWidget* frmClipquill::buildEventsAndCaptions() {
    // Hidden both, the nested splitter takes no room from the display place.
    auto* eventsAndCaptions = new QSplitter(Qt::Horizontal, m_displayColumn);
    eventsAndCaptions->setObjectName(QStringLiteral("fraEventsAndCaptions"));
    m_captionPanel = new CaptionPanel(m_timeline->captions(), eventsAndCaptions);
    m_captionPanel->currentTimeMs = [this] {
        return captionTimeMs();
    };
    m_captionMaking = new CaptionMaking(m_paths, m_timeline->controller(), m_timeline->grid(),
                                        m_timeline->captions(), *m_captionPanel, this);
    connect(m_cmdCaptions, &QPushButton::clicked, m_captionPanel, &CaptionPanel::cmdCaptions_Click);
    eventsAndCaptions->addWidget(m_timeline->gridView());
    eventsAndCaptions->addWidget(m_captionPanel);
    return eventsAndCaptions;
}

qint64 frmClipquill::captionTimeMs() const {
    const EventGridView* grid = m_timeline->gridView();
    const QModelIndex current = grid->currentIndex();
    if (grid->isHidden() || !current.isValid())
        return -1;
    return m_timeline->grid().row(current.row()).atMs;
}

RenderRequest frmClipquill::renderRequest() const {
    RenderRequest request = StudioRenderRequest(m_paths, m_studio, m_timeline->grid().rows(),
                                                m_paths.gstrRecordedAudioFileSpec,
                                                m_timeline->controller().recordingLengthMs(), {});
    AddCaptions(request.inputs, m_studio, m_timeline->captions().cues());
    return request;
}

void frmClipquill::connectRender() {
    m_renderPanel->setRequestProvider([this] { return renderRequest(); });
    // The rendered video takes the display place's player; the players let go of the files
    // a new render replaces.
    connect(m_renderPanel, &RenderPanel::playRenderedRequested, this,
            [this](const QString& finalMix) { showRenderedResult(finalMix, true); });
    connect(m_renderPanel, &RenderPanel::renderFinished, this, &frmClipquill::onRenderFinished);
    connect(m_renderPanel, &RenderPanel::releaseFilesRequested, this, [this] {
        m_media->stopAllPlayers();
        m_media->videoPlayer()->close();
    });
}

void frmClipquill::onRenderFinished(const RenderReport& report) {
    const QString file = report.output.isEmpty() ? LatestFinalMix(m_paths) : report.output;
    if (report.isDone() && QFileInfo(file).isFile()) {
        // Shown, not played: the user starts it, or sees at once where it went.
        showRenderedResult(file, false);
        return;
    }
    m_lblStatus->setText(report.isCancelled() ? QStringLiteral("The render was cancelled.")
                                              : QStringLiteral("The render failed."));
}

void frmClipquill::showRenderedResult(const QString& file, bool play) {
    // Watching the result is like recording: the screen saver stays away again (Stop ended it).
    m_keepAwake->tmrMoveMouseToPreventScreenSaver().start();
    MediaPlayer* player = m_media->videoPlayer();
    player->setVolume(90);
    if (play)
        player->setURL(file);
    else
        player->cue(file);
    m_media->displayPlace().showSurface(DisplaySurface::Video);
    m_lblStatus->setText(QStringLiteral("The render is ready to play in the display place: %1")
                             .arg(QDir::toNativeSeparators(file)));
}

MediaBrowser& frmClipquill::mediaBrowser() {
    return m_media->mediaBrowser();
}

DisplayPlace& frmClipquill::displayPlace() {
    return m_media->displayPlace();
}

void frmClipquill::cboVideoRes_Change(const QString& text) {
    m_studio.gstrVideoRes = text;
}

// AVI or MP4 for the next render; what was rendered last stays what Play, Save and Email use.
void frmClipquill::addFormatChoice(QWidget* central) {
    auto* formatLabel = new QLabel(QStringLiteral("Format:"), central);
    m_cboVideoFormat = new QComboBox(central);
    m_cboVideoFormat->setObjectName(QStringLiteral("cboVideoFormat"));
    m_cboVideoFormat->addItem(QStringLiteral("AVI"), int(RenderFormat::Avi));
    m_cboVideoFormat->addItem(QStringLiteral("MP4"), int(RenderFormat::Mp4));
    m_cboVideoFormat->setCurrentIndex(m_cboVideoFormat->findData(int(m_studio.renderFormat)));
    m_cboVideoFormat->setToolTip(
        QStringLiteral("AVI plays in desktop players; MP4 (H.264 and AAC) also plays in "
                       "browsers, phones and mail previews"));
    m_cboVideoFormat->setAccessibleName(QStringLiteral("Format"));
    formatLabel->setBuddy(m_cboVideoFormat);
    connect(m_cboVideoFormat, &QComboBox::currentIndexChanged, this, [this] {
        m_studio.renderFormat = RenderFormat(m_cboVideoFormat->currentData().toInt());
    });
    m_topBar->addWidget(formatLabel);
    m_topBar->addWidget(m_cboVideoFormat);
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
    if (!takeLetsClose()) {
        event->ignore();
        return;
    }
    Form_Unload();
    QMainWindow::closeEvent(event);
}

bool frmClipquill::takeLetsClose() {
    if (m_closeAnswered)
        return true;
    if (m_timeline->controller().gblnRecording())
        m_timeline->controller().stop();
    return m_timeline->takeQuestions().takeMayGo(QStringLiteral("closing the studio"), [this] {
        m_closeAnswered = true;
        close();
    });
}

void frmClipquill::Form_Unload() {
    // No recognition outlives the window, nor writes into the work folder being emptied.
    m_captionMaking->stop();
    // An unsaved take stays for the next start to offer back.
    DeleteFilesInFolder(m_paths.gstrTempFilesDirectory, m_timeline->takeKeeper().keptFileNames());
}

} // namespace cq
