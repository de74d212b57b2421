#pragma once

#include "library/DisplaySurface.h"
#include "library/MediaTabs.h"

#include <QString>
#include <QtGlobal>

namespace cq {

// What the timeline needs from the screen: the display place with its video player, picture
// viewer and text surface, and the players it stops. The main window provides it.
class MediaDisplay {
public:
    virtual ~MediaDisplay() = default;

    // The video player takes the display place and plays the file from beginMs (from the
    // start when beginMs < 0).
    virtual void showVideo(const QString& fileSpec, qint64 beginMs) = 0;
    // The file the video player holds, and whether it is playing it now.
    virtual QString currentVideo() const = 0;
    virtual bool isVideoPlaying() const = 0;
    virtual qint64 videoPositionMs() const = 0;
    // The video player takes the display place without changing what or where it plays.
    virtual void bringVideoToFront() = 0;
    virtual void stopVideo() = 0;
    // Replay silences the video so the recorded voice is heard; the stop button restores the
    // saved video volume.
    virtual void setVideoMuted(bool muted) = 0;
    // The tab's audio player plays the file.
    virtual void playAudio(MediaTabId tab, const QString& fileSpec) = 0;
    // The picture viewer takes the display place with the picture.
    virtual void showPicture(const QString& fileSpec) = 0;
    // The text surface takes the display place with the text drawn on it; speaks it as well
    // when asked.
    virtual void showText(const QString& text, bool speak) = 0;
    virtual void speakText(const QString& text) = 0;
    // Saves what the text surface shows as a picture (BMP content). False when it cannot.
    virtual bool saveTextPicture(const QString& fileSpec) = 0;
    // The display switch: shows the video, the last picture or the last text; while a
    // recording runs the shown item is logged.
    virtual void switchDisplay(DisplaySurface view) = 0;
    // An empty display place (the text surface, cleared).
    virtual void clearDisplay() = 0;
    // Stops the video player, the audio players and speech.
    virtual void stopPlayers() = 0;
};

} // namespace cq
