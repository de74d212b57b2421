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
#include "timeline/widgets/TimelineStudio.h"

#include <QMessageBox>

namespace cq {

namespace {
QString seconds(qint64 ms, int decimals) {
    return QString::number(ms / 1000.0, 'f', decimals);
}
} // namespace

StudioDisplay::StudioDisplay(MediaStation& media, StudioSettings& studio, QObject* parent)
    : QObject(parent), m_media(media), m_studio(studio) {}

void StudioDisplay::connectTimeline(TimelineStudio& timeline) {
    m_timeline = &timeline;
    MediaClickHandler* clicks = &timeline.clicks();
    EventLogger* logger = &timeline.logger();
    MediaBrowser& browser = m_media.mediaBrowser();
    DisplayPlace& place = m_media.displayPlace();

    connect(&browser, &MediaBrowser::fileClicked, clicks, &MediaClickHandler::File1_Click);
    // A thumbnail click shows the picture by itself; only the logging is left to do.
    connect(
        &browser, &MediaBrowser::mediaEventRequested, logger,
        [logger](const QString& type, const QString& file) { logger->LogMediaEvent(type, file); });
    connect(m_media.fraText(), &TextFrame::textClicked, clicks,
            [clicks](const QString& text, int option) {
                clicks->lstText_Click(text, static_cast<TextOption>(option));
            });
    connect(&place, &DisplayPlace::displaySwitchClicked, this, &StudioDisplay::afterDisplaySwitch);
    connect(&place, &DisplayPlace::fullScreenClicked, this, &StudioDisplay::cmdFullScreen_Click);

    MediaPlayer* video = m_media.WMPAudio(0);
    // The user moved the video's play position: the video from there is a new event.
    connect(video, &MediaPlayer::positionChange, logger,
            [logger, video](double, double newPosition) {
                logger->LogMediaEvent(QStringLiteral("Video"), video->URL(),
                                      QString::number(newPosition, 'f', 3));
            });
}

void StudioDisplay::showVideo(const QString& fileSpec, qint64 beginMs) {
    MediaPlayer* player = m_media.WMPAudio(0);
    player->setURL(fileSpec);
    if (beginMs > 0)
        player->mediaPlayer()->setPosition(beginMs);
    m_media.displayPlace().showSurface(DisplayPlace::VideoSurface);
}

QString StudioDisplay::currentVideo() const {
    return m_media.WMPAudio(0)->URL();
}

bool StudioDisplay::isVideoPlaying() const {
    return m_media.WMPAudio(0)->playState() == static_cast<int>(PlayState::Playing);
}

qint64 StudioDisplay::videoPositionMs() const {
    return m_media.WMPAudio(0)->mediaPlayer()->position();
}

void StudioDisplay::bringVideoToFront() {
    m_media.displayPlace().showSurface(DisplayPlace::VideoSurface);
}

void StudioDisplay::stopVideo() {
    m_media.WMPAudio(0)->stop();
}

void StudioDisplay::setVideoMuted(bool muted) {
    m_media.WMPAudio(0)->setMute(muted);
}

void StudioDisplay::playAudio(int tab, const QString& fileSpec) {
    // The text tab and the tab whose slider drives nothing have no player of their own: a
    // sound clicked there plays on the Audio tab's player.
    MediaPlayer* player = tab > 0 ? m_media.WMPAudio(tab) : nullptr;
    if (!player)
        player = m_media.WMPAudio(1);
    player->setURL(fileSpec);
}

void StudioDisplay::showPicture(const QString& fileSpec) {
    m_media.displayPlace().MakeHTMLPageForPicture(fileSpec);
}

void StudioDisplay::showText(const QString& text, bool speak) {
    DisplayPlace& place = m_media.displayPlace();
    place.showSurface(DisplayPlace::TextSurface);
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
    m_media.vox()->SpeakText(text);
}

bool StudioDisplay::saveTextPicture(const QString& fileSpec) {
    return m_media.picDisplay()->savePicture(fileSpec);
}

void StudioDisplay::switchDisplay(int view) {
    if (view == DisplayPlace::VideoSurface || view == DisplayPlace::PictureSurface)
        m_media.displayPlace().showSurface(view);
    afterDisplaySwitch(view);
}

QString StudioDisplay::pictureForSwitch() const {
    const MediaTab* pictures = m_media.mediaBrowser().tab(MediaBrowser::kPicturesTab);
    const QString selected = pictures->selectedEntry();
    if (!selected.isEmpty())
        return pictures->path() + u'/' + selected;
    return m_media.displayPlace().lastPicture();
}

void StudioDisplay::afterDisplaySwitch(int view) {
    if (!m_timeline)
        return;
    if (view == DisplayPlace::VideoSurface) {
        if (!currentVideo().isEmpty())
            m_timeline->logger().LogMediaEvent(QStringLiteral("Video"), currentVideo(),
                                               seconds(videoPositionMs(), 2));
    } else if (view == DisplayPlace::PictureSurface) {
        const QString picture = pictureForSwitch();
        if (!picture.isEmpty())
            m_timeline->logger().LogMediaEvent(QStringLiteral("Pictures"), picture);
    } else if (view == DisplayPlace::TextSurface) {
        m_timeline->clicks().lstText_Click(
            m_studio.gstrCurrentText, static_cast<TextOption>(m_media.fraText()->selectedOption()),
            true);
    }
}

void StudioDisplay::cmdFullScreen_Click() {
    MediaPlayer* video = m_media.WMPAudio(0);
    if (video->playState() == static_cast<int>(PlayState::Playing))
        video->setFullScreen(!video->fullScreen());
}

void StudioDisplay::clearDisplay() {
    m_media.picDisplay()->clear();
    m_media.displayPlace().showSurface(DisplayPlace::TextSurface);
}

void StudioDisplay::stopPlayers() {
    m_media.stopAllPlayers();
}

} // namespace cq
