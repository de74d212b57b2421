#pragma once

#include "captions/CaptionCue.h"
#include "captions/CaptionRecognitionJob.h"

#include <QObject>
#include <QPointer>

namespace cq {

struct AppPaths;
class CaptionPanel;
class CaptionTableModel;
class EventGridModel;
class RecordingController;

// "Make Captions" in the studio: recognises the take's voice in the background, shows how far
// it has come in the caption panel, and puts the words heard, with the cues of the typed texts,
// in place of the editor's cues. A new take, an opened project or a restored take cancels it:
// the words would be of another voice.
class CaptionMaking : public QObject {
    Q_OBJECT
public:
    // The take is the one the controller records, with the grid's rows and the editor's
    // captions; the panel shows how far the making has come.
    CaptionMaking(const AppPaths& paths, RecordingController& controller,
                  const EventGridModel& grid, CaptionTableModel& captions, CaptionPanel& panel,
                  QObject* parent = nullptr);
    ~CaptionMaking() override;

    // The running recognition, if any.
    CaptionRecognitionJob* job() const { return m_job; }

    void start();
    // Asks the recognition to stop; the panel says so once it has.
    void cancel();
    // Stops the recognition at once, waiting for its threads (the window is closing).
    void stop();

private:
    // Why there is nothing to make captions from; empty when the take has a voice.
    QString whyNoVoice() const;
    void onProgressed(int percent);
    void onEnded(const JobEnd& end);
    // The job ended, one way or another, with this said in the panel.
    void ended(const QString& status);

    const AppPaths& m_paths;
    const RecordingController& m_controller;
    const EventGridModel& m_grid;
    CaptionTableModel& m_captions;
    CaptionPanel& m_panel;
    QPointer<CaptionRecognitionJob> m_job;
    // The editor's cues are being replaced by the ones made here, not by someone else.
    bool m_replacing = false;
};

} // namespace cq
