#include "timeline/SlideShow.h"

#include "library/MediaTyping.h"
#include "platform/Random.h"
#include "timeline/EventLogger.h"
#include "timeline/MediaDisplay.h"
#include "timeline/PictureList.h"

namespace cq {

SlideShow::SlideShow(PictureList& pictures, MediaDisplay& display, EventLogger& logger,
                     QObject* parent)
    : QObject(parent), m_pictures(pictures), m_display(display), m_logger(logger),
      m_waitText(DefaultSlideShowWait()) {
    m_tmrPictureWait.setSingleShot(true);
    // A coarse timer may fire a few per cent early; a picture is never cut short.
    m_tmrPictureWait.setTimerType(Qt::PreciseTimer);
    connect(&m_tmrPictureWait, &QTimer::timeout, this, &SlideShow::step);
}

void SlideShow::cmdSlideShow_Click() {
    if (m_running)
        stop();
    else
        start();
}

void SlideShow::stop() {
    if (!m_running)
        return;
    m_tmrPictureWait.stop();
    finish();
}

void SlideShow::start() {
    m_running = true;
    emit runningChanged(true);
    // The selection is taken once; picking other files during the show changes nothing.
    m_picker.start(m_pictures.selectedRows());
    step();
}

void SlideShow::step() {
    if (!m_running)
        return;
    const QStringList entries = m_pictures.entries();
    const std::optional<int> index =
        m_picker.next(static_cast<int>(entries.size()), m_random, &RandomNumberBetween);
    if (!index) {
        finish();
        return;
    }
    showEntry(m_pictures.folder() + u'/' + entries[*index], *index);
    if (!m_running)
        return; // stopped by someone who watched the picture come
    const std::optional<int> waitMs = SlideShowWaitMs(m_waitText);
    if (!waitMs) {
        finish();
        return;
    }
    m_tmrPictureWait.start(*waitMs);
}

void SlideShow::showEntry(const QString& fileSpec, int listIndex) {
    // An entry that is no picture leaves the previous one on screen for its turn.
    if (GetMediaTypeFromFileSpec(fileSpec) != MediaKind::Pictures)
        return;
    m_display.showPicture(fileSpec);
    m_logger.LogMediaEvent(MediaKind::Pictures, fileSpec);
    emit pictureShown(listIndex, fileSpec);
}

void SlideShow::finish() {
    m_running = false;
    emit runningChanged(false);
}

} // namespace cq
