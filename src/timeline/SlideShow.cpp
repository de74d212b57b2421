#include "timeline/SlideShow.h"

#include "library/MediaTyping.h"
#include "platform/Random.h"
#include "platform/WaitTimer.h"
#include "timeline/EventLogger.h"
#include "timeline/MediaDisplay.h"
#include "timeline/PictureList.h"

namespace cq {

SlideShow::SlideShow(PictureList& pictures, MediaDisplay& display, EventLogger& logger,
                     WaitTimer& wait, QObject* parent)
    : QObject(parent), m_pictures(pictures), m_display(display), m_logger(logger), m_wait(wait),
      m_randomBetween(&RandomNumberBetween), m_waitText(DefaultSlideShowWait()) {}

void SlideShow::setRandomSource(SlideShowPicker::RandomBetween randomBetween) {
    m_randomBetween = std::move(randomBetween);
}

void SlideShow::cmdSlideShow_Click() {
    if (m_running)
        stop();
    else
        run();
}

void SlideShow::stop() {
    if (!m_running)
        return;
    m_running = false;
    m_wait.release();
}

void SlideShow::run() {
    m_running = true;
    emit runningChanged(true);
    m_picker.start(m_pictures.selectedRows());
    // Stopped and started again before the released wait has returned: that loop goes on.
    if (m_loopActive)
        return;
    m_loopActive = true;
    while (m_running) {
        const QStringList entries = m_pictures.entries();
        const std::optional<int> index =
            m_picker.next(static_cast<int>(entries.size()), m_random, m_randomBetween);
        if (!index)
            break;
        const QString fileSpec = m_pictures.folder() + u'/' + entries[*index];
        // An entry that is no picture leaves the previous one on screen for its turn.
        if (GetMediaTypeFromFileSpec(fileSpec) == u"Pictures") {
            m_display.showPicture(fileSpec);
            m_logger.LogMediaEvent(QStringLiteral("Pictures"), fileSpec);
            emit pictureShown(*index, fileSpec);
        }
        const std::optional<int> waitMs = SlideShowWaitMs(m_waitText);
        if (!waitMs)
            break;
        m_wait.WaitMilliseconds(*waitMs);
    }
    m_loopActive = false;
    m_running = false;
    emit runningChanged(false);
}

} // namespace cq
