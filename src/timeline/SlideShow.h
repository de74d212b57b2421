#pragma once

#include "timeline/SlideShowPicker.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace cq {

class EventLogger;
class MediaDisplay;
class PictureList;

// cmdSlideShow: steps through the Pictures list, one picture per wait, in order or at random,
// logging each picture while a recording runs. Each step is a tick of a timer, so the click that
// starts a show returns at once and Stop (or a second click) ends it before the next picture.
class SlideShow : public QObject {
    Q_OBJECT
public:
    SlideShow(PictureList& pictures, MediaDisplay& display, EventLogger& logger,
              QObject* parent = nullptr);

    // Starts a show when none runs (its first picture comes at once); stops the running one.
    void cmdSlideShow_Click();
    void stop();
    bool isRunning() const { return m_running; }

    // Read before every step, as the user may change them during a show.
    void setRandom(bool random) { m_random = random; }
    void setWaitText(const QString& text) { m_waitText = text; }

signals:
    void runningChanged(bool running);
    void pictureShown(int listIndex, const QString& fileSpec);

private:
    void start();
    void step();
    void showEntry(const QString& fileSpec, int listIndex);
    void finish();

    PictureList& m_pictures;
    MediaDisplay& m_display;
    EventLogger& m_logger;
    SlideShowPicker m_picker;
    QTimer m_tmrPictureWait;
    QString m_waitText;
    bool m_random = false;
    bool m_running = false;
};

} // namespace cq
