#pragma once

#include "app/Startup.h"
#include "app/StudioSettings.h"
#include "platform/WaitTimer.h"
#include "timeline/RecordingState.h"

#include <QMainWindow>

class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QHBoxLayout;
class QVBoxLayout;

namespace cq {

class KeepAwake;
class MasterVolume;
class MediaPlayer;
class PlayerControls;
class PlayerTransport;
class SpeechVoice;
class TextDisplaySurface;
class TextFrame;
class VideoPlayerWidget;
class VolumeLevelsPanel;

// The studio's main window. It owns the program's state (paths, directory settings, studio
// settings, recording state) and hands it to the subsystems it assembles.
class frmClipquill : public QMainWindow {
    Q_OBJECT
public:
    explicit frmClipquill(WindowlessStartup startup, QWidget* parent = nullptr);
    ~frmClipquill() override;

    const AppPaths& paths() const { return m_paths; }
    DirectorySettings& directorySettings() { return m_settings; }
    StudioSettings& studioSettings() { return m_studio; }
    RecordingState& recordingState() { return m_recording; }
    const QStringList& textList() const { return m_textList; }
    WaitTimer& waitTimer() { return *m_wait; }
    KeepAwake& keepAwake() { return *m_keepAwake; }
    SpeechVoice* vox() const { return m_vox; }
    TextFrame* fraText() const { return m_fraText; }
    TextDisplaySurface* picDisplay() const { return m_picDisplay; }
    VideoPlayerWidget* WindowsMediaPlayer1() const { return m_WindowsMediaPlayer1; }
    MediaPlayer* RecordedAudioPlayBackWMP() const { return m_RecordedAudioPlayBackWMP; }
    VolumeLevelsPanel* volumeLevels() const { return m_volumeLevels; }
    PlayerTransport* videoTransport() const { return m_videoTransport; }
    // The player of media tab i: the video player for 0, otherwise WMPAudio(i).
    MediaPlayer* WMPAudio(int index) const;
    // The sound controls of media tab i, wired to its player (the voice for the text tab).
    PlayerControls* createPlayerControls(int index, QWidget* parent);
    int lastAudioPlayerIndex() const { return m_lastAudioPlayerIndex; }

    void SpeakText();
    void StopSpeaking();

    static QString windowTitleText();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildLayout();
    void buildMediaPlayers();
    void cboVideoRes_Change(const QString& text);
    void cmdSaveDirectories_Click();
    void Form_Unload();
    void showStartupProblems();

    AppPaths m_paths;
    DirectorySettings m_settings;
    StudioSettings m_studio;
    RecordingState m_recording;
    QStringList m_textList;
    QStringList m_startupProblems;

    WaitTimer* m_wait = nullptr;
    KeepAwake* m_keepAwake = nullptr;

    QHBoxLayout* m_topBar = nullptr;
    QComboBox* m_cboVideoRes = nullptr;
    QPushButton* m_cmdSaveDirectories = nullptr;
    QSplitter* m_splitter = nullptr;
    QWidget* m_mediaArea = nullptr;
    QStackedWidget* m_displayPlace = nullptr;
    QLabel* m_splash = nullptr;

    SpeechVoice* m_vox = nullptr;
    TextFrame* m_fraText = nullptr;
    TextDisplaySurface* m_picDisplay = nullptr;
    VideoPlayerWidget* m_WindowsMediaPlayer1 = nullptr;
    MediaPlayer* m_RecordedAudioPlayBackWMP = nullptr;
    MasterVolume* m_masterVolume = nullptr;
    VolumeLevelsPanel* m_volumeLevels = nullptr;
    PlayerTransport* m_videoTransport = nullptr;
    MediaPlayer* m_WMPAudio[8] = {};
    int m_lastAudioPlayerIndex = 0;
};

} // namespace cq
