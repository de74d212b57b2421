#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QWidget;

namespace cq {

class CaptionTableModel;
class EventGridModel;
class EventGridView;
class EventLogger;
class MediaClickHandler;
class MediaDisplay;
class MediaPlayer;
class PictureList;
class ProjectPanel;
class QtVoicePlayer;
class Recorder;
class RecordingController;
class RecordingPanel;
class Replay;
class SlideShow;
class SlideShowPanel;
class TakeKeeper;
class TakeQuestions;
struct AppPaths;
struct DirectorySettings;

// Everything of the recording and its timeline, put together for the main window: the
// recorder, the event grid and its logging, the media clicks, replay, slide show, projects and
// their panels, and the captions of the take. The window places the panels.
class TimelineStudio : public QObject {
    Q_OBJECT
public:
    struct Context {
        const AppPaths& paths;
        const DirectorySettings& directories;
        QWidget* window;
        // The display place the media are shown in.
        MediaDisplay& display;
        // The player of the recorded voice; the studio makes its own when null.
        MediaPlayer* voicePlayer = nullptr;
        // The Pictures list of the slide show; the pictures folder when null.
        PictureList* pictures = nullptr;
    };

    explicit TimelineStudio(Context context, QObject* parent = nullptr);
    ~TimelineStudio() override;

    RecordingPanel* recordingPanel() const { return m_recordingPanel; }
    SlideShowPanel* slideShowPanel() const { return m_slideShowPanel; }
    ProjectPanel* projectPanel() const { return m_projectPanel; }
    EventGridView* gridView() const { return m_gridView; }

    EventGridModel& grid() { return *m_grid; }
    CaptionTableModel& captions() { return *m_captions; }
    EventLogger& logger() { return *m_logger; }
    MediaClickHandler& clicks() { return *m_clicks; }
    RecordingController& controller() { return *m_controller; }
    Recorder& recorder() { return *m_recorder; }
    Replay& replay() { return *m_replay; }
    TakeKeeper& takeKeeper() { return *m_takeKeeper; }
    TakeQuestions& takeQuestions() { return *m_takeQuestions; }

    // The start-up check of the sound input (shows the full-duplex message when there is none),
    // after which the microphone is kept open.
    void checkInputDevice();

signals:
    // Stop was pressed: the window ends its screen-saver keep-alive.
    void stopPressed();

private:
    Context m_context;
    EventGridModel* m_grid;
    CaptionTableModel* m_captions;
    Recorder* m_recorder;
    EventLogger* m_logger;
    QtVoicePlayer* m_voice;
    MediaDisplay& m_display;
    std::unique_ptr<PictureList> m_ownPictures;
    PictureList* m_pictures;
    MediaClickHandler* m_clicks;
    Replay* m_replay;
    SlideShow* m_slideShow;
    RecordingController* m_controller;
    RecordingPanel* m_recordingPanel;
    SlideShowPanel* m_slideShowPanel;
    ProjectPanel* m_projectPanel;
    EventGridView* m_gridView;
    TakeKeeper* m_takeKeeper;
    TakeQuestions* m_takeQuestions;

    void keepTheTake(QWidget* window);
};

} // namespace cq
