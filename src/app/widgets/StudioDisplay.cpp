#include "app/widgets/StudioDisplay.h"

#include "app/widgets/MediaStation.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "library/widgets/MediaTab.h"
#include "studio/StudioSettings.h"
#include "text/widgets/SpeechVoice.h"
#include "text/widgets/TextDisplaySurface.h"
#include "text/widgets/TextFrame.h"
#include "timeline/EventLogger.h"
#include "timeline/MediaClickHandler.h"

#include <QMessageBox>

namespace cq {

StudioDisplay::StudioDisplay(MediaStation& media, StudioSettings& studio, QObject* parent)
    : QObject(parent), m_media(media), m_studio(studio) {}

void StudioDisplay::connectTimeline(MediaClickHandler& clicks, EventLogger& events) {
    m_clicks = &clicks;
    m_logger = &events;
    EventLogger* logger = m_logger;
    MediaBrowser& browser = m_media.mediaBrowser();
    DisplayPlace& place = m_media.displayPlace();

    connect(&browser, &MediaBrowser::fileClicked, this, &StudioDisplay::File1_Click);
    // A thumbnail click shows the picture by itself; only the logging is left to do.
    connect(&browser, &MediaBrowser::mediaEventRequested, logger,
            [logger](MediaKind type, const QString& file) { logger->LogMediaEvent(type, file); });
    connect(m_media.fraText(), &TextFrame::textClicked, this, &StudioDisplay::lstText_Click);
    connect(m_media.fraText(), &TextFrame::textEdited, this,
            [this](const QString& text) { m_studio.gstrCurrentText = text; });
    connect(&place, &DisplayPlace::displaySwitchClicked, this, &StudioDisplay::afterDisplaySwitch);
    connect(&place, &DisplayPlace::fullScreenClicked, this, &StudioDisplay::cmdFullScreen_Click);

    MediaPlayer* video = m_media.videoPlayer();
    // The user moved the video's play position: the video from there is a new event.
    connect(video, &MediaPlayer::positionChange, logger,
            [logger, video](double, double newPosition) {
                logger->LogMediaEvent(MediaKind::Video, video->URL(),
                                      qRound64(qMax(0.0, newPosition) * 1000));
            });
}

void StudioDisplay::showVideo(const QString& fileSpec, qint64 beginMs) {
    MediaPlayer* player = m_media.videoPlayer();
    player->setURL(fileSpec);
    if (beginMs > 0)
        player->mediaPlayer()->setPosition(beginMs);
    m_media.displayPlace().showSurface(DisplaySurface::Video);
}

QString StudioDisplay::currentVideo() const {
    return m_media.videoPlayer()->URL();
}

bool StudioDisplay::isVideoPlaying() const {
    return m_media.videoPlayer()->playState() == static_cast<int>(PlayState::Playing);
}

qint64 StudioDisplay::videoPositionMs() const {
    return m_media.videoPlayer()->mediaPlayer()->position();
}

void StudioDisplay::bringVideoToFront() {
    m_media.displayPlace().showSurface(DisplaySurface::Video);
}

void StudioDisplay::stopVideo() {
    m_media.videoPlayer()->stop();
}

void StudioDisplay::setVideoMuted(bool muted) {
    m_media.videoPlayer()->setMute(muted);
}

void StudioDisplay::playAudio(MediaTabId tab, const QString& fileSpec) {
    // The video tab's player is the display place's, and the text tab and the tab whose slider
    // drives nothing have none: a sound clicked there plays on the Audio tab's player.
    MediaPlayer* player = tab != MediaTabId::Video ? m_media.WMPAudio(tab) : nullptr;
    if (!player)
        player = m_media.WMPAudio(MediaTabId::Audio);
    player->setURL(fileSpec);
}

void StudioDisplay::showPicture(const QString& fileSpec) {
    m_media.displayPlace().MakeHTMLPageForPicture(fileSpec);
}

void StudioDisplay::showText(const QString& text, bool speak) {
    m_studio.gstrCurrentText = text;
    DisplayPlace& place = m_media.displayPlace();
    place.showSurface(DisplaySurface::Text);
    if (!m_media.picDisplay()->Preview(text)) {
        // Never modal: a replay or recording goes on behind the message.
        QMessageBox* box = MakeMessageTooBig(&place);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
        return;
    }
    if (speak)
        speakText(text);
}

void StudioDisplay::speakText(const QString& text) {
    m_studio.gstrCurrentText = text;
    m_media.vox()->SpeakText(text);
}

bool StudioDisplay::saveTextPicture(const QString& fileSpec) {
    return m_media.picDisplay()->savePicture(fileSpec);
}

void StudioDisplay::switchDisplay(DisplaySurface view) {
    if (view != DisplaySurface::Text)
        m_media.displayPlace().showSurface(view);
    afterDisplaySwitch(view);
}

QString StudioDisplay::pictureForSwitch() const {
    const MediaTab* pictures = m_media.mediaBrowser().tab(MediaTabId::Pictures);
    const QString selected = pictures->selectedEntry();
    if (!selected.isEmpty())
        return pictures->path() + u'/' + selected;
    return m_media.displayPlace().lastPicture();
}

void StudioDisplay::afterDisplaySwitch(DisplaySurface view) {
    if (!m_logger)
        return;
    if (view == DisplaySurface::Video) {
        if (!currentVideo().isEmpty())
            m_logger->LogMediaEvent(MediaKind::Video, currentVideo(), videoPositionMs());
    } else if (view == DisplaySurface::Picture) {
        const QString picture = pictureForSwitch();
        if (!picture.isEmpty())
            m_logger->LogMediaEvent(MediaKind::Pictures, picture);
    } else if (view == DisplaySurface::Text) {
        m_clicks->showAndLogText(m_studio.gstrCurrentText, m_media.fraText()->selectedOption(),
                                 true);
    }
}

void StudioDisplay::File1_Click(MediaTabId tab, const QString& fileSpec) {
    m_clicks->showAndLogFile(tab, fileSpec);
}

void StudioDisplay::lstText_Click(const QString& text, TextOption option) {
    m_clicks->showAndLogText(text, option);
}

void StudioDisplay::cmdFullScreen_Click() {
    MediaPlayer* video = m_media.videoPlayer();
    if (video->playState() == static_cast<int>(PlayState::Playing))
        video->setFullScreen(!video->fullScreen());
}

void StudioDisplay::clearDisplay() {
    m_media.picDisplay()->clear();
    m_media.displayPlace().showSurface(DisplaySurface::Text);
}

void StudioDisplay::stopPlayers() {
    m_media.stopAllPlayers();
}

} // namespace cq
