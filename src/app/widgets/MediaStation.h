#pragma once

#include "library/MediaTabs.h"
#include "studio/AppPaths.h"
#include "studio/DirectorySettings.h"
#include "studio/StudioSettings.h"

#include <QObject>
#include <QStringList>

class QWidget;

namespace cq {

class DisplayPlace;
class MasterVolume;
class MediaBrowser;
class MediaPlayer;
class PlayerControls;
class PlayerTransport;
class SpeechVoice;
class TextDisplaySurface;
class TextFrame;
class ToolPool;
class VideoPlayerWidget;
class VolumeLevelsPanel;

// Everything the user looks at and listens to: the media browser with its tabs, the display
// place with the video player, picture viewer and text surface, the players of the tabs, the
// text list, the speech voice and the volume controls — made and wired together in one place so
// the main window only has to put the two halves on screen.
class MediaStation : public QObject {
    Q_OBJECT
public:
    MediaStation(const AppPaths& paths, DirectorySettings& settings, StudioSettings& studio,
                 QStringList& textList, ToolPool& pool, QWidget* mediaArea, QWidget* displayParent);

    MediaBrowser& mediaBrowser() const { return *m_browser; }
    DisplayPlace& displayPlace() const { return *m_display; }
    SpeechVoice* vox() const { return m_vox; }
    TextFrame* fraText() const { return m_fraText; }
    TextDisplaySurface* picDisplay() const { return m_picDisplay; }
    VideoPlayerWidget* WindowsMediaPlayer1() const { return m_WindowsMediaPlayer1; }
    MediaPlayer* RecordedAudioPlayBackWMP() const { return m_RecordedAudioPlayBackWMP; }
    // The video player of the display place, which the Video tab's controls drive.
    MediaPlayer* videoPlayer() const;
    // The player of a media tab: the video player for the Video tab, none for the text tab
    // and the Standard Effects tab.
    MediaPlayer* WMPAudio(MediaTabId tab) const;
    PlayerControls* playerControls(MediaTabId tab) const;

    void SpeakText();
    void StopSpeaking();
    // The stop button when nothing records: every player and the voice fall silent.
    void stopAllPlayers();

private:
    void buildPlayers(QWidget* mediaArea, QWidget* displayParent);
    void placeInBrowser();
    void wireDisplay();

    StudioSettings& m_studio;
    MediaBrowser* m_browser = nullptr;
    DisplayPlace* m_display = nullptr;
    SpeechVoice* m_vox = nullptr;
    TextFrame* m_fraText = nullptr;
    TextDisplaySurface* m_picDisplay = nullptr;
    VideoPlayerWidget* m_WindowsMediaPlayer1 = nullptr;
    MediaPlayer* m_RecordedAudioPlayBackWMP = nullptr;
    MasterVolume* m_masterVolume = nullptr;
    VolumeLevelsPanel* m_volumeLevels = nullptr;
    PlayerTransport* m_videoTransport = nullptr;
    MediaPlayer* m_WMPAudio[kMediaTabCount] = {};
    PlayerControls* m_controls[kMediaTabCount] = {};
};

} // namespace cq
