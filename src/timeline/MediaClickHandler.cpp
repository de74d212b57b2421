#include "timeline/MediaClickHandler.h"

#include "library/LastView.h"
#include "library/MediaTyping.h"
#include "studio/StudioSettings.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/EventLogic.h"
#include "timeline/MediaDisplay.h"

namespace cq {

MediaClickHandler::MediaClickHandler(EventGridModel& grid, EventLogger& logger,
                                     MediaDisplay& display, QString workFolder, QObject* parent)
    : QObject(parent), m_grid(grid), m_logger(logger), m_display(display),
      m_workFolder(std::move(workFolder)) {}

void MediaClickHandler::showAndLogFile(MediaTabId tab, const QString& fileSpec) {
    const MediaKind mediaType = GetMediaTypeFromFileSpec(fileSpec);
    std::optional<qint64> begVideoAt;
    if (mediaType == MediaKind::Pictures) {
        m_display.showPicture(fileSpec);
    } else if (mediaType == MediaKind::Audio) {
        m_display.playAudio(tab, fileSpec);
        return; // sounds are heard, never logged
    } else if (mediaType == MediaKind::Video) {
        if (m_display.currentVideo() == fileSpec && m_display.isVideoPlaying()) {
            // Clicked again while it plays: it goes on, and the row notes where it stood.
            begVideoAt = m_display.videoPositionMs();
            m_display.bringVideoToFront();
        } else {
            m_display.showVideo(fileSpec, -1);
        }
    }
    m_logger.LogMediaEvent(mediaType, fileSpec, begVideoAt);
}

void MediaClickHandler::showAndLogText(const QString& text, TextOption option,
                                       bool fromDisplaySwitch) {
    if (text.isEmpty() || (!fromDisplaySwitch && toggledBack(text)))
        return;
    presentText(text, option);
    if (m_logger.isRecording() && option != TextOption::Speech)
        logTextEvent(text, option);
}

bool MediaClickHandler::toggledBack(const QString& text) {
    if (text != m_previousClickText) {
        m_previousClickText = text;
        return false;
    }
    m_previousClickText.clear();
    m_display.switchDisplay(RevertToLastView(m_grid.mediaTypes()));
    return true;
}

void MediaClickHandler::presentText(const QString& text, TextOption option) {
    switch (option) {
    case TextOption::Text:
        m_display.showText(text, false);
        break;
    case TextOption::Speech:
        m_display.speakText(text);
        break;
    case TextOption::Both:
        m_display.showText(text, true);
        break;
    }
}

void MediaClickHandler::logTextEvent(const QString& text, TextOption option) {
    const QString logged = TextForEvent(text);
    const QString fileSpec = m_workFolder + u'/' + TextPictureFileName(logged);
    if (!m_display.saveTextPicture(fileSpec))
        emit textPictureFailed(fileSpec);
    const MediaKind kind = option == TextOption::Both ? MediaKind::Both : MediaKind::Text;
    m_logger.LogMediaEvent(kind, fileSpec, std::nullopt, logged);
}

} // namespace cq
