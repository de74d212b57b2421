#pragma once

#include "take/Recorder.h"

#include <QObject>
#include <QString>

#include <functional>

namespace cq {

class EventGridModel;
class EventLogger;
class MediaDisplay;
class Replay;
class SlideShow;
class VoicePlayer;

// What the record, stop and replay buttons do: one recording from the record press to Stop, and
// Stop as the end of every replay, slide show and player.
class RecordingController : public QObject {
    Q_OBJECT
public:
    struct Parts {
        EventGridModel& grid;
        EventLogger& logger;
        Recorder& recorder;
        MediaDisplay& display;
        VoicePlayer& voice;
        Replay& replay;
        SlideShow* slideShow = nullptr;
    };

    RecordingController(Parts parts, QString voiceFileSpec, QObject* parent = nullptr);

    // Start-up check of the sound input: false (and the user told what to do) when there is
    // none.
    bool checkInputDevice();
    // Starts a recording once the take there is may be replaced; while one runs nothing changes.
    void record();
    // Ends the recording that runs, or else stops every replay, slide show and player.
    void stop();
    // Replays the last recording (the voice file must be there).
    void replay();

    QString voiceFileSpec() const { return m_voiceFileSpec; }

    // A take is being recorded: from the press until Stop, even when its capture ended early.
    bool gblnRecording() const { return m_gblnRecording; }
    // The length of the take's voice in milliseconds, from the bytes actually captured.
    qint64 recordingLengthMs() const { return m_recordingLengthMs; }
    // A restored take, an opened project or a discarded take brings the voice's length.
    void setRecordingLengthMs(qint64 ms) { m_recordingLengthMs = ms; }

    // Asked before a new recording replaces the take there is; false holds the press back (the
    // asker presses again once the take is saved or discarded). Unset: always replaced.
    std::function<bool()> mayReplaceTake;

signals:
    void recordingChanged(bool recording);
    // Stop was pressed (the screen-saver keep-alive ends with it).
    void stopPressed();
    void information(const QString& title, const QString& text);
    void warning(const QString& title, const QString& text);

private:
    bool takeMayBeReplaced() const;
    // The one place the recording starts and ends; the logger logs only in between.
    void setRecording(bool recording);
    void startRecording();
    void endRecording();
    void stopPlayback();
    void RecordMsg();
    void StopRec();
    void onCaptureEnded(Recorder::EndReason reason, const QString& detail);

    Parts m_parts;
    QString m_voiceFileSpec;
    bool m_gblnRecording = false;
    qint64 m_recordingLengthMs = 0;
};

// The texts the recorder's window shows.
inline constexpr char kNoMicrophoneTitle[] = "No microphone";
inline constexpr char kNoMicrophoneText[] =
    "No microphone was found, so your voice cannot be recorded. Connect a microphone, or "
    "choose a sound input in the system's sound settings, then press the record button.";
inline constexpr char kRecordASoundFirst[] = "Please record a sound first";

} // namespace cq
