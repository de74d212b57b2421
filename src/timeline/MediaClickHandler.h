#pragma once

#include "library/MediaTabs.h"
#include "text/TextOption.h"

#include <QObject>
#include <QString>

namespace cq {

class EventGridModel;
class EventLogger;
class MediaDisplay;
struct RecordingState;
struct StudioSettings;

// The clicks on media items: a file of a browser tab (File1_Click) and an entry of the text
// list (lstText_Click). The item is shown and, while a recording runs, logged.
class MediaClickHandler : public QObject {
    Q_OBJECT
public:
    MediaClickHandler(RecordingState& state, StudioSettings& studio, EventGridModel& grid,
                      EventLogger& logger, MediaDisplay& display, QString workFolder,
                      QObject* parent = nullptr);

    // A click on a file of a tab's file list.
    void File1_Click(MediaTabId tab, const QString& fileSpec);
    // A click on a text-list entry. fromDisplaySwitch marks the display switch's own call,
    // which never toggles back.
    void lstText_Click(const QString& text, TextOption option, bool fromDisplaySwitch = false);

    QString previousClickText() const { return m_previousClickText; }

signals:
    // A text picture could not be saved; the event was logged all the same.
    void textPictureFailed(const QString& fileSpec);

private:
    // A second click on the text of the click before goes back to what was shown before it.
    bool toggledBack(const QString& text);
    void presentText(const QString& text, TextOption option);
    // The text is saved as a picture in the work folder, and its row names that picture.
    void logTextEvent(TextOption option);

    RecordingState& m_state;
    StudioSettings& m_studio;
    EventGridModel& m_grid;
    EventLogger& m_logger;
    MediaDisplay& m_display;
    QString m_workFolder;
    QString m_previousClickText;
};

} // namespace cq
