#include "take/RecordingController.h"

#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/MediaDisplay.h"
#include "timeline/Replay.h"
#include "timeline/SlideShow.h"
#include "timeline/VoicePlayer.h"

#include <QFile>
#include <QFileInfo>

namespace cq {

namespace {
const QString kTitle = QStringLiteral("Recording");
} // namespace

RecordingController::RecordingController(Parts parts, QString voiceFileSpec, QObject* parent)
    : QObject(parent), m_parts(parts), m_voiceFileSpec(std::move(voiceFileSpec)) {
    connect(&m_parts.recorder, &Recorder::captureEnded, this, &RecordingController::onCaptureEnded);
    connect(&m_parts.recorder, &Recorder::lastSyncFailed, this, [this](const QString& why) {
        emit warning(kTitle, QStringLiteral("The recorded voice in \"%1\" may not be whole on the "
                                            "disk (%2). Save it as a project, on another disk if "
                                            "need be.")
                                 .arg(m_voiceFileSpec, why));
    });
}

bool RecordingController::checkInputDevice() {
    if (Recorder::hasInputDevice())
        return true;
    // Without any input there is nothing to share with the output, so this is no question of
    // full duplex: the user needs to know that recording is impossible until a microphone comes.
    emit warning(QString::fromLatin1(kNoMicrophoneTitle), QString::fromLatin1(kNoMicrophoneText));
    return false;
}

void RecordingController::record() {
    if (!m_gblnRecording && !takeMayBeReplaced())
        return;
    startRecording();
}

bool RecordingController::takeMayBeReplaced() const {
    return !mayReplaceTake || mayReplaceTake();
}

void RecordingController::setRecording(bool recording) {
    m_gblnRecording = recording;
    m_parts.logger.setRecording(recording);
}

void RecordingController::startRecording() {
    if (m_gblnRecording)
        return;
    if (!Recorder::hasInputDevice()) {
        emit warning(kTitle, QStringLiteral("No sound input was found, so nothing can be "
                                            "recorded. Connect a microphone and press record "
                                            "again."));
        return;
    }
    // A running slide show goes on: from now on its pictures are logged.
    m_parts.replay.stop();
    m_parts.logger.reset();
    m_parts.voice.release();
    m_parts.display.stopVideo();
    m_parts.display.setVideoMuted(false);
    RecordMsg();
}

void RecordingController::RecordMsg() {
    setRecording(true);
    m_parts.grid.setEditable(false);
    // The replay player must not hold the file that is about to be replaced.
    m_parts.voice.release();
    QFile::remove(m_voiceFileSpec);
    const Recorder::StartResult result = m_parts.recorder.start(m_voiceFileSpec);
    if (result == Recorder::StartResult::Started) {
        emit recordingChanged(true);
        return;
    }
    setRecording(false);
    m_parts.grid.setEditable(true);
    if (result == Recorder::StartResult::FileError)
        emit warning(kTitle, QStringLiteral("The voice cannot be recorded: \"%1\" cannot be "
                                            "written (%2). Check that the work folder exists, "
                                            "is writable and that the disk has room.")
                                 .arg(m_voiceFileSpec, m_parts.recorder.errorString()));
    else
        emit warning(kTitle, QStringLiteral("The sound input could not be opened, so nothing "
                                            "can be recorded."));
}

void RecordingController::stop() {
    emit stopPressed();
    m_parts.display.setVideoMuted(false);
    if (m_gblnRecording)
        endRecording();
    else
        stopPlayback();
    if (m_parts.slideShow)
        m_parts.slideShow->stop();
}

void RecordingController::endRecording() {
    StopRec();
    setRecording(false);
    m_parts.grid.setEditable(true);
    m_parts.display.stopPlayers();
    emit recordingChanged(false);
}

void RecordingController::stopPlayback() {
    m_parts.replay.stop();
    m_parts.voice.stop();
    m_parts.display.stopPlayers();
}

void RecordingController::StopRec() {
    const QString error = m_parts.recorder.errorString();
    const qint64 bytes = m_parts.recorder.stop();
    m_recordingLengthMs = bytes * 1000 / Recorder::kBytesPerSecond;
    if (bytes == 0)
        return; // nothing was captured: no file
    if (!QFileInfo(m_voiceFileSpec).isFile()) {
        emit warning(kTitle, QString::fromLatin1(kRecordASoundFirst));
        return;
    }
    const QString closeError = m_parts.recorder.errorString();
    if (closeError != error && !closeError.isEmpty())
        emit warning(kTitle, QStringLiteral("The end of the recorded voice could not be written "
                                            "to \"%1\" (%2); what was captured before is kept.")
                                 .arg(m_voiceFileSpec, closeError));
}

void RecordingController::onCaptureEnded(Recorder::EndReason reason, const QString& detail) {
    const QString kept =
        QStringLiteral("%1 seconds of voice were captured and are kept in \"%2\".")
            .arg(QString::number(m_parts.recorder.capturedMs() / 1000.0, 'f', 1), m_voiceFileSpec);
    switch (reason) {
    case Recorder::EndReason::LimitReached:
        // The capture ends at its limit; the timeline goes on until Stop.
        break;
    case Recorder::EndReason::DeviceLost:
        emit warning(kTitle, QStringLiteral("The sound input stopped during the recording (%1). "
                                            "%2 Clicks are still logged until you press Stop.")
                                 .arg(detail, kept));
        break;
    case Recorder::EndReason::WriteFailed:
        emit warning(kTitle, QStringLiteral("The recorded voice could not be written any further "
                                            "(%1): the disk may be full. %2 Clicks are still "
                                            "logged until you press Stop.")
                                 .arg(detail, kept));
        break;
    }
}

void RecordingController::replay() {
    if (m_gblnRecording || m_parts.replay.isRunning())
        return;
    if (!QFileInfo(m_voiceFileSpec).isFile()) {
        emit information(kTitle, QString::fromLatin1(kRecordASoundFirst));
        return;
    }
    m_parts.replay.start(m_voiceFileSpec);
}

} // namespace cq
