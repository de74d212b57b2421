#pragma once

#include "library/MediaTabs.h"
#include "text/TextOption.h"

#include <QObject>
#include <QString>

namespace cq {

class EventGridModel;
class EventLogger;
class MediaDisplay;

// The clicks on media items: a file of a browser tab and an entry of the text list. The item is
// shown and, while a recording runs, logged.
class MediaClickHandler : public QObject {
    Q_OBJECT
public:
    MediaClickHandler(EventGridModel& grid, EventLogger& logger, MediaDisplay& display,
                      QString workFolder, QObject* parent = nullptr);

    // A file of a tab's file list was clicked.
    void showAndLogFile(MediaTabId tab, const QString& fileSpec);
    // A text-list entry was clicked. fromDisplaySwitch marks the display switch's own call,
    // which never toggles back.
    void showAndLogText(const QString& text, TextOption option, bool fromDisplaySwitch = false);

    QString previousClickText() const { return m_previousClickText; }

signals:
    // A text picture could not be saved; the event was logged all the same.
    void textPictureFailed(const QString& fileSpec);

private:
    // A second click on the text of the click before goes back to what was shown before it.
    bool toggledBack(const QString& text);
    void presentText(const QString& text, TextOption option);
    // The text is saved as a picture in the work folder, and its row names that picture.
    void logTextEvent(const QString& text, TextOption option);

    EventGridModel& m_grid;
    EventLogger& m_logger;
    MediaDisplay& m_display;
    QString m_workFolder;
    QString m_previousClickText;
};

} // namespace cq
