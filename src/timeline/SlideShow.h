#pragma once

#include "timeline/SlideShowPicker.h"

#include <QObject>
#include <QString>

namespace cq {

class EventLogger;
class MediaDisplay;
class PictureList;
class WaitTimer;

// cmdSlideShow: steps through the Pictures list, one picture per wait, in order or at random,
// logging each picture while a recording runs. The show runs inside the click that started it
// and waits with the window's wait timer, so Stop (or a second click) releases it at once.
class SlideShow : public QObject {
    Q_OBJECT
public:
    SlideShow(PictureList& pictures, MediaDisplay& display, EventLogger& logger, WaitTimer& wait,
              QObject* parent = nullptr);

    // Starts a show when none runs (and returns when it has ended); stops the running one.
    void cmdSlideShow_Click();
    void stop();
    bool isRunning() const { return m_running; }

    // Read before every step, as the user may change them during a show.
    void setRandom(bool random) { m_random = random; }
    void setWaitText(const QString& text) { m_waitText = text; }
    void setRandomSource(SlideShowPicker::RandomBetween randomBetween);

signals:
    void runningChanged(bool running);
    void pictureShown(int listIndex, const QString& fileSpec);

private:
    void run();

    PictureList& m_pictures;
    MediaDisplay& m_display;
    EventLogger& m_logger;
    WaitTimer& m_wait;
    SlideShowPicker m_picker;
    SlideShowPicker::RandomBetween m_randomBetween;
    QString m_waitText;
    bool m_random = false;
    bool m_running = false;
    bool m_loopActive = false;
};

} // namespace cq
