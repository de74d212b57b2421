#include "app/widgets/TimelineStudio.h"

#include "captions/CaptionTableModel.h"
#include "studio/AppPaths.h"
#include "studio/DirectorySettings.h"
#include "take/Recorder.h"
#include "take/RecordingController.h"
#include "take/TakeKeeper.h"
#include "take/widgets/RecordingPanel.h"
#include "take/widgets/TakeQuestions.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/FolderPictureList.h"
#include "timeline/MediaClickHandler.h"
#include "timeline/QtVoicePlayer.h"
#include "timeline/Replay.h"
#include "timeline/SlideShow.h"
#include "timeline/widgets/EventGridView.h"
#include "timeline/widgets/ProjectPanel.h"
#include "timeline/widgets/SlideShowPanel.h"

#include <QMessageBox>

namespace cq {

namespace {
// Messages never hold up the window: a recording or replay goes on behind them.
void showMessage(QWidget* window, QMessageBox::Icon icon, const QString& title,
                 const QString& text) {
    auto* box = new QMessageBox(icon, title, text, QMessageBox::Ok, window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
} // namespace

TimelineStudio::TimelineStudio(Context context, QObject* parent)
    : QObject(parent), m_context(context), m_display(context.display) {
    m_grid = new EventGridModel(this);
    m_captions = new CaptionTableModel(this);
    m_recorder = new Recorder(this);
    m_logger = new EventLogger(*m_grid, *m_recorder, this);
    m_voice = new QtVoicePlayer(context.voicePlayer, this);
    if (context.pictures) {
        m_pictures = context.pictures;
    } else {
        m_ownPictures =
            std::make_unique<FolderPictureList>(context.directories.gstrMyPicturesDirectory);
        m_pictures = m_ownPictures.get();
    }
    m_clicks = new MediaClickHandler(*m_grid, *m_logger, m_display,
                                     context.paths.gstrTempFilesDirectory, this);
    m_replay = new Replay(*m_grid, m_display, *m_voice, this);
    m_slideShow = new SlideShow(*m_pictures, m_display, *m_logger, this);
    m_controller = new RecordingController(
        {*m_grid, *m_logger, *m_recorder, m_display, *m_voice, *m_replay, m_slideShow},
        context.paths.gstrRecordedAudioFileSpec, this);

    QWidget* window = context.window;
    m_recordingPanel = new RecordingPanel(*m_controller, m_recorder->meter(), window);
    m_slideShowPanel = new SlideShowPanel(*m_slideShow, window);
    m_projectPanel = new ProjectPanel(*m_grid, *m_captions, context.paths.gstrRecordedAudioFileSpec,
                                      context.paths.gstrTempFilesDirectory,
                                      context.directories.gstrMyVideoProjectsDirectory, window);
    m_gridView = new EventGridView(*m_grid, window);
    // The recording's controller owns the recording's state; the project panel hears of it.
    connect(m_controller, &RecordingController::recordingChanged, m_projectPanel,
            &ProjectPanel::setRecording);
    connect(
        m_projectPanel, &ProjectPanel::projectOpened, m_controller,
        [this](const QString&, qint64 voiceMs) { m_controller->setRecordingLengthMs(voiceMs); });
    connect(m_recordingPanel, &RecordingPanel::cmdEvents_Click, m_gridView,
            &EventGridView::cmdEvents_Click);
    connect(m_controller, &RecordingController::stopPressed, this, &TimelineStudio::stopPressed);
    connect(m_controller, &RecordingController::information, window,
            [window](const QString& title, const QString& text) {
                showMessage(window, QMessageBox::Information, title, text);
            });
    connect(m_controller, &RecordingController::warning, window,
            [window](const QString& title, const QString& text) {
                showMessage(window, QMessageBox::Warning, title, text);
            });
    connect(m_logger, &EventLogger::eventRefused, window,
            [window](const QString& title, const QString& text) {
                showMessage(window, QMessageBox::Warning, title, text);
            });
    connect(m_clicks, &MediaClickHandler::textPictureFailed, window,
            [window](const QString& fileSpec) {
                showMessage(window, QMessageBox::Warning, QStringLiteral("Recording"),
                            QStringLiteral("The picture of the text could not be saved "
                                           "to \"%1\"; its event is logged but will "
                                           "render black.")
                                .arg(fileSpec));
            });
    keepTheTake(window);
}

// The take stays in the work folder until it is saved or discarded; what would replace it asks
// first.
void TimelineStudio::keepTheTake(QWidget* window) {
    m_takeKeeper = new TakeKeeper(*m_controller, *m_logger, *m_captions,
                                  m_context.paths.gstrTempFilesDirectory, this);
    m_takeQuestions = new TakeQuestions(
        *m_takeKeeper, [this] { m_projectPanel->chooseFolderAndSave(); }, window);
    m_controller->mayReplaceTake = [this] {
        return m_takeQuestions->takeMayGo(QStringLiteral("recording a new one"),
                                          [this] { m_controller->record(); });
    };
    m_projectPanel->mayReplaceTake = [this] {
        return m_takeQuestions->takeMayGo(QStringLiteral("opening a project"),
                                          [this] { m_projectPanel->chooseFolderAndOpen(); });
    };
    connect(m_projectPanel, &ProjectPanel::projectSaved, m_takeKeeper, &TakeKeeper::markSaved);
    for (auto failed :
         {&TakeKeeper::journalFailed, &TakeKeeper::captionsFailed, &TakeKeeper::rowsLeftOut})
        connect(m_takeKeeper, failed, window, [window](const QString& title, const QString& text) {
            showMessage(window, QMessageBox::Warning, title, text);
        });
    connect(m_takeQuestions, &TakeQuestions::takeRestored, window,
            [window](const QString& problem) {
                if (!problem.isEmpty())
                    showMessage(window, QMessageBox::Warning, QStringLiteral("Restore"),
                                QStringLiteral("The events of the recording are back, but its "
                                               "voice is not: %1")
                                    .arg(problem));
            });
}

TimelineStudio::~TimelineStudio() = default;

void TimelineStudio::checkInputDevice() {
    m_controller->checkInputDevice();
    // From now on the microphone stays open: its level shows, and a take starts at the press
    // instead of when the sound system has set up a stream. One plugged in later is found too.
    m_recorder->listen();
}

} // namespace cq
