#pragma once

#include "app/Startup.h"
#include "render/RenderInputs.h"
#include "studio/StudioSettings.h"

#include <QMainWindow>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;
class QHBoxLayout;
class QLayout;
class QVBoxLayout;

namespace cq {

class CaptionMaking;
class CaptionPanel;
class DisplayPlace;
struct RenderReport;
class KeepAwake;
class MediaBrowser;
class MediaStation;
class RenderPanel;
class SharePanel;
class StudioDisplay;
class TabPictureList;
class TimelineStudio;
class ToolPool;

// The studio's main window. It owns the program's state (paths, directory settings, studio
// settings) and hands it to the subsystems it assembles.
class frmClipquill : public QMainWindow {
    Q_OBJECT
public:
    explicit frmClipquill(WindowlessStartup startup, QWidget* parent = nullptr);
    ~frmClipquill() override;

    const AppPaths& paths() const { return m_paths; }
    DirectorySettings& directorySettings() { return m_settings; }
    StudioSettings& studioSettings() { return m_studio; }
    const QStringList& textList() const { return m_textList; }
    KeepAwake& keepAwake() { return *m_keepAwake; }
    MediaStation& media() { return *m_media; }
    MediaBrowser& mediaBrowser();
    DisplayPlace& displayPlace();
    RenderPanel& renderPanel() { return *m_renderPanel; }
    QLabel* statusText() const { return m_lblStatus; }
    TimelineStudio& timeline() { return *m_timeline; }
    CaptionMaking& captionMaking() { return *m_captionMaking; }
    // What "Render" renders: the grid, the voice, the settings and the captions.
    RenderRequest renderRequest() const;

    static QString windowTitleText();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildLayout();
    void buildTopBar(QWidget* central);
    void buildStatusBar();
    QLayout* buildTimeline(QWidget* central);
    // The caption editor beside the event grid, under the display place.
    QWidget* buildEventsAndCaptions();
    // Where a caption added in the editor starts: the selected event's time, when the grid
    // shows one; otherwise negative, after the last caption.
    qint64 captionTimeMs() const;
    void connectRender();
    // The rendered file in the display place's player, at the volume a result is watched at;
    // play starts it at once, otherwise it waits at its first picture.
    void showRenderedResult(const QString& file, bool play);
    void onRenderFinished(const RenderReport& report);
    void cboVideoRes_Change(const QString& text);
    void addFormatChoice(QWidget* central);
    void cmdSaveDirectories_Click();
    // Whether the window may close now: an unsaved take asks first.
    bool takeLetsClose();
    void Form_Unload();
    void showStartupProblems();

    AppPaths m_paths;
    DirectorySettings m_settings;
    StudioSettings m_studio;
    QStringList m_textList;
    QStringList m_startupProblems;

    KeepAwake* m_keepAwake = nullptr;
    // The one pool every batch of tool runs of this window shares.
    ToolPool* m_toolPool = nullptr;

    QHBoxLayout* m_topBar = nullptr;
    QComboBox* m_cboVideoRes = nullptr;
    QComboBox* m_cboVideoFormat = nullptr;
    QLabel* m_lblStatus = nullptr;
    QPushButton* m_cmdSaveDirectories = nullptr;
    RenderPanel* m_renderPanel = nullptr;
    QSplitter* m_splitter = nullptr;
    QWidget* m_mediaArea = nullptr;
    QSplitter* m_displayColumn = nullptr;
    MediaStation* m_media = nullptr;
    StudioDisplay* m_display = nullptr;
    std::unique_ptr<TabPictureList> m_pictureList;
    TimelineStudio* m_timeline = nullptr;
    CaptionPanel* m_captionPanel = nullptr;
    CaptionMaking* m_captionMaking = nullptr;
    QPushButton* m_cmdCaptions = nullptr;
    SharePanel* m_sharePanel = nullptr;
    // The unsaved take was saved or discarded on the way out.
    bool m_closeAnswered = false;
};

} // namespace cq
