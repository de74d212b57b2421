#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;
class QToolButton;

namespace cq {

class LevelMeter;
class MicrophoneMeter;
class RecordingController;

// The record and stop buttons with the microphone's level meter beside them, the blinking
// "Recording" label, the grid's "Events" button and the replay button.
class RecordingPanel : public QWidget {
    Q_OBJECT
public:
    RecordingPanel(RecordingController& controller, const LevelMeter& meter,
                   QWidget* parent = nullptr);

    QToolButton* recordButton() const { return m_cmdRecordVoiceEmail; }
    QToolButton* stopButton() const { return m_cmdPause; }
    QToolButton* replayButton() const { return m_cmdPlayVoiceEmail; }
    QLabel* recordingLabel() const { return m_lblRecording; }
    MicrophoneMeter* microphoneMeter() const { return m_meter; }
    QTimer& tmrRecording() { return m_tmrRecording; }

signals:
    void cmdEvents_Click();

private:
    void cmdRecordVoiceEmail_Click();
    // The Stop button, named after the pause button it once was.
    void cmdPause_Click();
    void cmdPlayVoiceEmail_Click();
    void onRecordingChanged(bool recording);
    void tmrRecording_Timer();

    RecordingController& m_controller;
    QToolButton* m_cmdRecordVoiceEmail;
    QToolButton* m_cmdPause;
    QToolButton* m_cmdPlayVoiceEmail;
    QPushButton* m_cmdEvents;
    QLabel* m_lblRecording;
    MicrophoneMeter* m_meter;
    QTimer m_tmrRecording;
};

} // namespace cq
