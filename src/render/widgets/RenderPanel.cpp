#include "render/widgets/RenderPanel.h"

#include "render/widgets/RenderProgressDialog.h"
#include "studio/AppPaths.h"
#include "studio/FinalMix.h"
#include "studio/StudioSettings.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QUrl>

namespace cq {

RenderPanel::RenderPanel(const AppPaths& paths, StudioSettings& studio, ToolPool& pool,
                         QWidget* parent)
    : QWidget(parent), m_paths(paths), m_studio(studio), m_pool(pool) {
    setObjectName(QStringLiteral("RenderPanel"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    m_cmdRender = new QPushButton(QStringLiteral("Render"), this);
    m_cmdRender->setObjectName(QStringLiteral("cmdRender"));
    m_cmdRender->setToolTip(
        QStringLiteral("Render all the video events that you click on like videos, text, pics, "
                       "etc, into one file with the audio that was recorded."));
    connect(m_cmdRender, &QPushButton::clicked, this, &RenderPanel::cmdRender_Click);

    m_cmdPlayRendered = new QPushButton(this);
    m_cmdPlayRendered->setObjectName(QStringLiteral("cmdPlayRendered"));
    m_cmdPlayRendered->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    m_cmdPlayRendered->setAccessibleName(QStringLiteral("Play Rendered Video"));
    m_cmdPlayRendered->setToolTip(QStringLiteral("Play the rendered video"));
    m_cmdPlayRendered->setAccessibleDescription(m_cmdPlayRendered->toolTip());
    connect(m_cmdPlayRendered, &QPushButton::clicked, this, &RenderPanel::cmdPlayRendered_Click);

    layout->addWidget(m_cmdRender);
    layout->addWidget(m_cmdPlayRendered);
    m_chkVideoSound = addSwitch(
        this, QStringLiteral("Video sound"), QStringLiteral("chkVideoSound"),
        QStringLiteral("Keep the sound of the videos in the render, mixed under your voice"),
        &StudioSettings::keepVideoSound);
    m_chkEvenVoice = addSwitch(
        this, QStringLiteral("Even out voice"), QStringLiteral("chkEvenVoice"),
        QStringLiteral("Bring your voice to the loudness of other videos, without clipping"),
        &StudioSettings::evenVoice);
    m_chkReduceNoise =
        addSwitch(this, QStringLiteral("Reduce background noise"), QStringLiteral("chkReduceNoise"),
                  QStringLiteral("Take steady hiss and hum out of your voice before it is mixed"),
                  &StudioSettings::reduceNoise);
    // The caption switches belong with the output's format; they stay at the end of the panel
    // unless the window puts them there.
    m_captionOptions = new QWidget(this);
    auto* captionLayout = new QHBoxLayout(m_captionOptions);
    captionLayout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_captionOptions);
    m_chkCaptions =
        addSwitch(m_captionOptions, QStringLiteral("Captions"), QStringLiteral("chkCaptions"),
                  QStringLiteral("Write the captions beside the rendered video as "
                                 "subtitle files (.srt and .vtt)"),
                  &StudioSettings::captions);
    m_chkBurnCaptions = addSwitch(
        m_captionOptions, QStringLiteral("Burn in captions"), QStringLiteral("chkBurnCaptions"),
        QStringLiteral("Draw the captions into the picture, for players that show no "
                       "subtitles"),
        &StudioSettings::burnCaptions);
}

QCheckBox* RenderPanel::addSwitch(QWidget* row, const QString& caption, const QString& name,
                                  const QString& tip, bool StudioSettings::*field) {
    auto* box = new QCheckBox(caption, row);
    box->setObjectName(name);
    box->setAccessibleName(caption);
    box->setToolTip(tip);
    box->setAccessibleDescription(tip);
    box->setChecked(m_studio.*field);
    connect(box, &QCheckBox::toggled, this, [this, field](bool on) { m_studio.*field = on; });
    row->layout()->addWidget(box);
    return box;
}

RenderPanel::~RenderPanel() = default;

void RenderPanel::cmdRender_Click() {
    if (m_job && m_job->isRunning())
        return;
    const RenderRequest request =
        m_request ? m_request()
                  : RenderRequest{{}, QStringLiteral("The studio has nothing to render.")};
    if (!request.ok()) {
        RenderReport refused;
        refused.message = request.problem;
        return onFinished(refused);
    }
    emit releaseFilesRequested();
    delete m_job;
    m_job = new RenderJob(request.inputs, m_pool, this);

    m_progress = new RenderProgressDialog(this);
    connect(m_job, &RenderJob::progressed, m_progress, &RenderProgressDialog::setPercent);
    connect(m_job, &RenderJob::statusChanged, m_progress, &RenderProgressDialog::setStatus);
    connect(m_progress, &RenderProgressDialog::cancelRequested, m_job, &RenderJob::cancel);
    connect(m_job, &RenderJob::ended, this, [this] { onFinished(m_job->report()); });
    m_cmdRender->setEnabled(false);
    m_progress->show();
    m_job->start();
}

void RenderPanel::onFinished(const RenderReport& report) {
    m_lastReport = report;
    m_cmdRender->setEnabled(true);
    if (m_progress) {
        // close() would ask the dialog to cancel; the render is over, so it is simply done.
        m_progress->accept();
        m_progress->deleteLater();
        m_progress = nullptr;
    }
    emit renderFinished(report);
    if (!m_quiet)
        showOutcome(report);
}

void RenderPanel::showOutcome(const RenderReport& report) {
    if (report.isCancelled() || (report.ok() && report.message.isEmpty()))
        return;
    QMessageBox box(
        report.ok() ? QMessageBox::Information : QMessageBox::Warning, QStringLiteral("Render"),
        report.message.isEmpty() ? QStringLiteral("The render failed.") : report.message,
        QMessageBox::Close, this);
    QPushButton* openLog = nullptr;
    if (!report.logFile.isEmpty()) { // only a log that was written is offered
        openLog = box.addButton(QStringLiteral("Open Render Log"), QMessageBox::ActionRole);
        openLog->setObjectName(QStringLiteral("cmdOpenRenderLog"));
    }
    box.exec();
    if (openLog && box.clickedButton() == openLog)
        QDesktopServices::openUrl(QUrl::fromLocalFile(report.logFile));
}

void RenderPanel::cmdPlayRendered_Click() {
    const QString file = LatestFinalMix(m_paths);
    if (!QFileInfo::exists(file)) {
        if (!m_quiet)
            QMessageBox::information(this, QStringLiteral("Render"),
                                     QStringLiteral("There is no rendered video yet. Press "
                                                    "\"Render\" first."));
        return;
    }
    emit playRenderedRequested(file);
}

} // namespace cq
