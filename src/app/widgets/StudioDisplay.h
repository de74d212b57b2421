#pragma once

#include "text/TextOption.h"
#include "timeline/MediaDisplay.h"

#include <QObject>

namespace cq {

class EventLogger;
class MediaClickHandler;
class MediaStation;
struct StudioSettings;

// The display place as the timeline drives it, made of the window's own parts: the video
// player, the picture page viewer, the text surface, the tab players and the speech voice of
// the media station. connectTimeline() routes the user's clicks on those parts to the
// timeline, which shows the items and logs them while a recording runs.
class StudioDisplay : public QObject, public MediaDisplay {
    Q_OBJECT
public:
    StudioDisplay(MediaStation& media, StudioSettings& studio, QObject* parent = nullptr);

    // clicks shows and logs the clicked items; logger logs what is brought on screen otherwise.
    void connectTimeline(MediaClickHandler& clicks, EventLogger& logger);

    void showVideo(const QString& fileSpec, qint64 beginMs) override;
    QString currentVideo() const override;
    bool isVideoPlaying() const override;
    qint64 videoPositionMs() const override;
    void bringVideoToFront() override;
    void stopVideo() override;
    void setVideoMuted(bool muted) override;
    void playAudio(MediaTabId tab, const QString& fileSpec) override;
    void showPicture(const QString& fileSpec) override;
    void showText(const QString& text, bool speak) override;
    void speakText(const QString& text) override;
    bool saveTextPicture(const QString& fileSpec) override;
    void switchDisplay(DisplaySurface view) override;
    void clearDisplay() override;
    void stopPlayers() override;

private:
    // A display switch after its surface is shown: logs the video or picture, and for the text
    // runs the text-list click.
    void afterDisplaySwitch(DisplaySurface view);
    // The Pictures tab's selected file, else the picture shown last.
    QString pictureForSwitch() const;
    void cmdFullScreen_Click();
    void File1_Click(MediaTabId tab, const QString& fileSpec);
    void lstText_Click(const QString& text, TextOption option);

    MediaStation& m_media;
    StudioSettings& m_studio;
    MediaClickHandler* m_clicks = nullptr;
    EventLogger* m_logger = nullptr;
};

} // namespace cq
