#include "app/widgets/MediaStation.h"

#include "library/playback/MasterVolume.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/PlayerControls.h"
#include "library/playback/widgets/PlayerTransport.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "library/playback/widgets/VolumeLevelsPanel.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "platform/ToolLocator.h"
#include "text/widgets/SpeechVoice.h"
#include "text/widgets/TextDisplaySurface.h"
#include "text/widgets/TextFrame.h"

#include <QLayout>
#include <QWidget>

namespace cq {

MediaStation::MediaStation(const AppPaths& paths, DirectorySettings& settings,
                           StudioSettings& studio, QStringList& textList, ToolPool& pool,
                           QWidget* mediaArea, QWidget* displayParent)
    : QObject(mediaArea), m_studio(studio) {
    m_vox = new SpeechVoice(QString(), this);
    m_browser = new MediaBrowser(paths, settings, LocateConvert(paths.gstrImageMagickFileSpec),
                                 pool, mediaArea);
    m_display = new DisplayPlace(paths, displayParent);
    m_fraText = new TextFrame(m_vox, paths.textListFileSpec, textList, mediaArea);
    connect(m_fraText, &TextFrame::listChanged, this,
            [this, &textList] { textList = m_fraText->entries(); });
    buildPlayers(mediaArea, displayParent);
    placeInBrowser();
    wireDisplay();
    mediaArea->layout()->addWidget(m_browser);
    mediaArea->layout()->addWidget(m_videoTransport);
    mediaArea->layout()->addWidget(m_volumeLevels);
    m_browser->pointFoldersAtSettings();
}

void MediaStation::buildPlayers(QWidget* mediaArea, QWidget* displayParent) {
    m_RecordedAudioPlayBackWMP = new MediaPlayer(this);
    for (MediaTabId tab : {MediaTabId::Audio, MediaTabId::Pictures, MediaTabId::SoundEffects,
                           MediaTabId::Other1, MediaTabId::Other2})
        m_WMPAudio[TabIndex(tab)] = new MediaPlayer(this);
    m_masterVolume = new MasterVolume(this);
    m_WindowsMediaPlayer1 = new VideoPlayerWidget(displayParent);
    m_picDisplay = new TextDisplaySurface(displayParent);
    m_volumeLevels = new VolumeLevelsPanel(m_RecordedAudioPlayBackWMP, m_masterVolume, mediaArea);
    m_videoTransport = new PlayerTransport(m_WindowsMediaPlayer1->player(), mediaArea);
    // The replayed voice ends: the video shown with it stops too.
    connect(m_RecordedAudioPlayBackWMP, &MediaPlayer::playStateChange, this, [this](int state) {
        if (state == static_cast<int>(PlayState::Stopped))
            m_WindowsMediaPlayer1->player()->stop();
    });
}

void MediaStation::placeInBrowser() {
    m_browser->setTextFrame(m_fraText);
    for (int i = 0; i < kMediaTabCount; ++i) {
        auto* controls = new PlayerControls(TabAt(i), WMPAudio(TabAt(i)), m_browser);
        connect(controls, &PlayerControls::stopSpeechRequested, this, &MediaStation::StopSpeaking);
        m_controls[i] = controls;
        m_browser->setTabControls(TabAt(i), controls);
    }
}

void MediaStation::wireDisplay() {
    m_display->setVideoSurface(m_WindowsMediaPlayer1);
    m_display->setTextSurface(m_picDisplay);
    connect(m_browser, &MediaBrowser::pictureClicked, m_display,
            &DisplayPlace::MakeHTMLPageForPicture);
    connect(m_fraText, &TextFrame::listPointSizeChanged, m_browser,
            &MediaBrowser::setListPointSize);
    connect(m_display, &DisplayPlace::viewPicsClicked, m_browser, &MediaBrowser::cmdViewPics_Click);
}

MediaPlayer* MediaStation::videoPlayer() const {
    return m_WindowsMediaPlayer1->player();
}

MediaPlayer* MediaStation::WMPAudio(MediaTabId tab) const {
    return tab == MediaTabId::Video ? videoPlayer() : m_WMPAudio[TabIndex(tab)];
}

PlayerControls* MediaStation::playerControls(MediaTabId tab) const {
    return m_controls[TabIndex(tab)];
}

void MediaStation::SpeakText() {
    m_vox->SpeakText(m_studio.gstrCurrentText);
}

void MediaStation::StopSpeaking() {
    m_vox->StopSpeaking();
}

void MediaStation::stopAllPlayers() {
    m_RecordedAudioPlayBackWMP->stop();
    for (int i = 0; i < kMediaTabCount; ++i)
        if (MediaPlayer* p = WMPAudio(TabAt(i)))
            p->stop();
    StopSpeaking();
}

} // namespace cq
