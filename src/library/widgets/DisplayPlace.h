#pragma once

#include "library/DisplaySurface.h"
#include "studio/AppPaths.h"

#include <QSize>
#include <QString>
#include <QWidget>

class QPushButton;
class QStackedWidget;
class QTimer;

namespace cq {

class PageViewer;

// The one place of the window where the video player, the picture viewer and the text surface
// take turns, with the buttons that switch between them. Pictures are shown as a page written
// for the viewer's current width.
class DisplayPlace : public QWidget {
    Q_OBJECT
public:
    explicit DisplayPlace(const AppPaths& paths, QWidget* parent = nullptr);

    // The surfaces of the player and of the text display are made elsewhere.
    void setVideoSurface(QWidget* surface);
    void setTextSurface(QWidget* surface);

    // Writes the single-picture page for the file and shows it after tmrPictureWait; false for a
    // file that gets no page.
    bool MakeHTMLPageForPicture(const QString& fileSpec);
    void showSurface(DisplaySurface surface);
    DisplaySurface currentSurface() const;
    QString lastPicture() const { return m_lastPicture; }
    PageViewer* pictureViewer() const { return m_picture; }

signals:
    // A switch button: the video and picture surfaces are shown at once; the owner logs the
    // item, and for the text runs the text-list click that draws it.
    void displaySwitchClicked(cq::DisplaySurface surface);
    void fullScreenClicked();
    void viewPicsClicked();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void cmdDisplayVideoOrPics_Click(int index);
    void tmrPictureWait_Timer();
    void writePicturePage();
    void refitPicture();
    QWidget* placeholder(const QString& name);
    void replaceSurface(DisplaySurface which, QWidget*& current, QWidget* surface);

    const AppPaths& m_paths;
    QStackedWidget* m_stack = nullptr;
    PageViewer* m_picture = nullptr;
    QWidget* m_video = nullptr;
    QWidget* m_text = nullptr;
    QPushButton* m_cmdDisplay[kDisplaySurfaceCount] = {};
    QPushButton* m_cmdFullScreen = nullptr;
    QPushButton* m_cmdViewPics = nullptr;
    QTimer* m_tmrPictureWait = nullptr;
    QTimer* m_refit = nullptr;
    QString m_lastPicture;
    bool m_pictureToFront = false; // the page being loaded takes the place when it is ready
    int m_pageWidth = -1;          // the viewer width the picture page was written for
    QSize m_pictureSize;           // the proportions of the last picture that could be read
};

} // namespace cq
