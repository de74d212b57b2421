#pragma once

#include "render/RenderJob.h"

#include <QWidget>

#include <functional>

class QCheckBox;
class QPushButton;

namespace cq {

struct AppPaths;
struct StudioSettings;
class RenderProgressDialog;
class ToolPool;

// The Render button, the button that plays the result and the render's options (the videos'
// sound, captions written beside the result, captions burned in). What to render comes whole
// from a provider, so the studio's paths, settings and grid plug in without this panel knowing
// them.
class RenderPanel : public QWidget {
    Q_OBJECT
public:
    using RequestProvider = std::function<RenderRequest()>;

    // pool: where the render runs its pieces, shared with the studio's other batches of runs.
    RenderPanel(const AppPaths& paths, StudioSettings& studio, ToolPool& pool,
                QWidget* parent = nullptr);
    ~RenderPanel() override;

    void setRequestProvider(RequestProvider provider) { m_request = std::move(provider); }
    // Message boxes are skipped (tests); the outcome is still in lastReport().
    void setQuiet(bool quiet) { m_quiet = quiet; }

    // "Captions" and "Burn in captions", for the window to place beside the output's format.
    QWidget* captionOptions() const { return m_captionOptions; }
    RenderJob* currentJob() const { return m_job; }
    const RenderReport& lastReport() const { return m_lastReport; }

    void cmdRender_Click();
    void cmdPlayRendered_Click();

signals:
    // The players must let go of the files the render is about to replace.
    void releaseFilesRequested();
    void playRenderedRequested(const QString& finalMix);
    void renderFinished(const cq::RenderReport& report);

private:
    void onFinished(const RenderReport& report);
    void showOutcome(const RenderReport& report);
    // A check box in the row that sets one of the studio's switches as it is ticked.
    QCheckBox* addSwitch(QWidget* row, const QString& caption, const QString& name,
                         const QString& tip, bool StudioSettings::*field);

    const AppPaths& m_paths;
    StudioSettings& m_studio;
    ToolPool& m_pool;
    RequestProvider m_request;
    QPushButton* m_cmdRender = nullptr;
    QPushButton* m_cmdPlayRendered = nullptr;
    RenderProgressDialog* m_progress = nullptr;
    QCheckBox* m_chkVideoSound = nullptr;
    QCheckBox* m_chkEvenVoice = nullptr;
    QCheckBox* m_chkReduceNoise = nullptr;
    QCheckBox* m_chkCaptions = nullptr;
    QCheckBox* m_chkBurnCaptions = nullptr;
    QWidget* m_captionOptions = nullptr;
    RenderJob* m_job = nullptr;
    RenderReport m_lastReport;
    bool m_quiet = false;
};

} // namespace cq
