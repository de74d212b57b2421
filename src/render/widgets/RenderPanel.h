#pragma once

#include "render/RenderJob.h"
#include "studio/EventRow.h"

#include <QWidget>

#include <functional>

class QCheckBox;
class QPushButton;

namespace cq {

struct AppPaths;
struct StudioSettings;
class RenderProgressDialog;

// The Render button and the button that plays the result. The grid's rows and the length of
// the recording come from providers, so the recorder's grid plugs in without this panel
// knowing it.
class RenderPanel : public QWidget {
    Q_OBJECT
public:
    using RowsProvider = std::function<QList<EventRow>()>;
    using LengthProvider = std::function<qint64()>; // the recording's length in ms

    RenderPanel(const AppPaths& paths, StudioSettings& studio, QWidget* parent = nullptr);
    ~RenderPanel() override;

    void setRowsProvider(RowsProvider provider) { m_rows = std::move(provider); }
    void setLengthProvider(LengthProvider provider) { m_length = std::move(provider); }
    // Message boxes are skipped (tests); the outcome is still in lastReport().
    void setQuiet(bool quiet) { m_quiet = quiet; }

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

    const AppPaths& m_paths;
    StudioSettings& m_studio;
    RowsProvider m_rows;
    LengthProvider m_length;
    QPushButton* m_cmdRender = nullptr;
    QPushButton* m_cmdPlayRendered = nullptr;
    RenderProgressDialog* m_progress = nullptr;
    QCheckBox* m_chkVideoSound = nullptr;
    RenderJob* m_job = nullptr;
    RenderReport m_lastReport;
    bool m_quiet = false;
};

} // namespace cq
