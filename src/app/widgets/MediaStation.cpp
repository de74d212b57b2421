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
    m_fraText = new TextFrame(studio, m_vox, paths.textListFileSpec, textList, mediaArea);
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
    for (int i = 1; i < 8; ++i)
        if (i != PlayerControls::kTextAndSpeechIndex && i != PlayerControls::kUndrivenSliderIndex)
            m_WMPAudio[i] = new MediaPlayer(this);
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
    for (int i = 0; i < MediaBrowser::kTabCount; ++i) {
        auto* controls = new PlayerControls(i, WMPAudio(i), m_browser);
        connect(controls, &PlayerControls::stopSpeechRequested, this, &MediaStation::StopSpeaking);
        connect(controls, &PlayerControls::playerClicked, this,
                [this](int index) { m_lastAudioPlayerIndex = index; });
        m_controls[i] = controls;
        m_browser->setTabControls(i, controls);
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

MediaPlayer* MediaStation::WMPAudio(int index) const {
    if (index == 0)
        return m_WindowsMediaPlayer1->player();
    return index > 0 && index < 8 ? m_WMPAudio[index] : nullptr;
}

PlayerControls* MediaStation::playerControls(int index) const {
    return index >= 0 && index < 8 ? m_controls[index] : nullptr;
}

void MediaStation::SpeakText() {
    m_vox->SpeakText(m_studio.gstrCurrentText);
}

void MediaStation::StopSpeaking() {
    m_vox->StopSpeaking();
}

void MediaStation::stopAllPlayers() {
    m_RecordedAudioPlayBackWMP->stop();
    for (int i = 0; i < 8; ++i)
        if (MediaPlayer* p = WMPAudio(i))
            p->stop();
    StopSpeaking();
}

} // namespace cq
