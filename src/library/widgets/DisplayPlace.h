#pragma once

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
    enum Surface { VideoSurface = 0, PictureSurface = 1, TextSurface = 2 };

    explicit DisplayPlace(const AppPaths& paths, QWidget* parent = nullptr);

    // The surfaces of the player and of the text display are made elsewhere.
    void setVideoSurface(QWidget* surface);
    void setTextSurface(QWidget* surface);

    // Writes the single-picture page for the file and shows it after tmrPictureWait; false for a
    // file that gets no page.
    bool MakeHTMLPageForPicture(const QString& fileSpec);
    void showSurface(int surface);
    int currentSurface() const;
    QString lastPicture() const { return m_lastPicture; }
    PageViewer* pictureViewer() const { return m_picture; }
    QPushButton* viewPicsButton() const { return m_cmdViewPics; }

signals:
    // cmdDisplayVideoOrPics(i): the surface is shown for 0 and 1; the owner logs the item, and
    // for 2 runs the text-list click that draws the text.
    void displaySwitchClicked(int index);
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

    const AppPaths& m_paths;
    QStackedWidget* m_stack = nullptr;
    PageViewer* m_picture = nullptr;
    QWidget* m_video = nullptr;
    QWidget* m_text = nullptr;
    QPushButton* m_cmdDisplay[3] = {};
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
