#include "app/widgets/CaptionMaking.h"

#include "app/StudioCaptions.h"
#include "captions/CaptionRecognitionJob.h"
#include "captions/CaptionTableModel.h"
#include "captions/widgets/CaptionPanel.h"
#include "platform/WavFormat.h"
#include "studio/AppPaths.h"
#include "take/RecordingController.h"
#include "timeline/EventGridModel.h"

namespace cq {

CaptionMaking::CaptionMaking(const AppPaths& paths, RecordingController& controller,
                             const EventGridModel& grid, CaptionTableModel& captions,
                             CaptionPanel& panel, QObject* parent)
    : QObject(parent), m_paths(paths), m_controller(controller), m_grid(grid), m_captions(captions),
      m_panel(panel) {
    m_panel.setMakeCaptions([this] { start(); });
    m_panel.setCancelMaking([this] { cancel(); });
    connect(&controller, &RecordingController::recordingChanged, this, [this](bool recording) {
        if (recording)
            cancel();
    });
    // Cues put in by anyone else (a new take, a project, a restored take) are of another voice.
    connect(&m_captions, &CaptionTableModel::modelReset, this, [this] {
        if (!m_replacing)
            cancel();
    });
}

CaptionMaking::~CaptionMaking() {
    stop();
}

QString CaptionMaking::whyNoVoice() const {
    if (m_controller.gblnRecording())
        return QStringLiteral("Stop the recording first: the captions are made from the whole "
                              "recorded voice.");
    if (m_controller.recordingLengthMs() <= 0 ||
        WavDurationMs(m_paths.gstrRecordedAudioFileSpec) <= 0)
        return QStringLiteral("There is no recorded voice to make captions from: record a "
                              "message first.");
    return {};
}

void CaptionMaking::start() {
    if (m_job)
        return;
    if (const QString why = whyNoVoice(); !why.isEmpty()) {
        m_panel.showStatus(why);
        return;
    }
    m_job = new CaptionRecognitionJob(m_paths.gstrRecordedAudioFileSpec,
                                      LocateFfmpeg(m_paths.gstrFFMPEGFileSpec),
                                      m_paths.gstrTempFilesDirectory, this);
    connect(m_job, &CaptionRecognitionJob::progressed, this, &CaptionMaking::onProgressed);
    connect(m_job, &CaptionRecognitionJob::ended, this, &CaptionMaking::onEnded);
    m_panel.showMaking(true);
    m_panel.showStatus(QStringLiteral("Listening to the voice..."));
    m_job->start();
}

void CaptionMaking::cancel() {
    if (m_job)
        m_job->cancel();
}

void CaptionMaking::stop() {
    // The job's end waits for its threads; nothing is said to a panel that may be going away.
    delete m_job;
}

void CaptionMaking::onProgressed(int percent) {
    m_panel.showStatus(QStringLiteral("Making the captions: %1%").arg(percent));
}

void CaptionMaking::onEnded(const JobEnd& end) {
    if (end.isCancelled())
        return ended(QStringLiteral("Making the captions was cancelled."));
    if (end.isFailed())
        return ended(QStringLiteral("The captions could not be made: %1").arg(end.message));
    const CaptionCues cues = m_job->cues();
    const CaptionCues all = VoiceAndTextCues(cues, m_grid.rows(), m_controller.recordingLengthMs());
    m_replacing = true;
    m_captions.replaceCues(all);
    m_replacing = false;
    // Recognition is a draft: the line says so, short enough to stay one line under the table.
    ended(cues.isEmpty() ? QStringLiteral("No words were heard; the captions are the texts'.")
                         : QStringLiteral("%1 captions made: a draft to read over and correct.")
                               .arg(all.size()));
}

void CaptionMaking::ended(const QString& status) {
    m_panel.showMaking(false);
    m_panel.showStatus(status);
    // The job is still in its own signal.
    if (m_job)
        m_job->deleteLater();
    m_job = nullptr;
}

} // namespace cq
