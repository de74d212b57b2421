#include "library/widgets/DisplayPlace.h"

#include "library/PicturePages.h"
#include "library/widgets/PageViewer.h"
#include "platform/Folders.h"
#include "platform/TextFiles.h"
#include "platform/widgets/NamedButton.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QImageReader>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace cq {

namespace {
struct SwitchButton {
    const char* caption;
    const char* tooltip;
};
constexpr SwitchButton kSwitchButtons[kDisplaySurfaceCount] = {
    {"Video", "Show the video that is playing if any."},
    {"Pictures", "Show the last picture displayed"},
    {"Text", "Show the last text displayed"},
};
} // namespace

DisplayPlace::DisplayPlace(const AppPaths& paths, QWidget* parent)
    : QWidget(parent), m_paths(paths) {
    setObjectName(QStringLiteral("displayPlace"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    m_stack = new QStackedWidget(this);
    m_stack->setStyleSheet(QStringLiteral("QStackedWidget { background: black; }"));
    m_video = placeholder(QStringLiteral("WindowsMediaPlayer1"));
    m_picture = new PageViewer(m_stack);
    m_picture->setObjectName(QStringLiteral("WebBrowserDisplayPic"));
    m_picture->setAccessibleName(QStringLiteral("Picture display"));
    m_text = placeholder(QStringLiteral("picDisplay"));
    m_stack->addWidget(m_video);
    m_stack->addWidget(m_picture);
    m_stack->addWidget(m_text);
    layout->addWidget(m_stack, 1);

    auto* buttons = new QHBoxLayout;
    for (int i = 0; i < kDisplaySurfaceCount; ++i) {
        m_cmdDisplay[i] = NamedButton(QString::fromLatin1(kSwitchButtons[i].caption),
                                      QStringLiteral("cmdDisplayVideoOrPics_%1").arg(i),
                                      QString::fromLatin1(kSwitchButtons[i].tooltip), this);
        connect(m_cmdDisplay[i], &QPushButton::clicked, this,
                [this, i] { cmdDisplayVideoOrPics_Click(i); });
        buttons->addWidget(m_cmdDisplay[i]);
    }
    buttons->addStretch(1);
    m_cmdViewPics = NamedButton(
        QStringLiteral("View Pics"), QStringLiteral("cmdViewPics"),
        QStringLiteral(
            "View Pictures in order to see them while clicking on them as the video is being made"),
        this);
    connect(m_cmdViewPics, &QPushButton::clicked, this, &DisplayPlace::viewPicsClicked);
    buttons->addWidget(m_cmdViewPics);
    m_cmdFullScreen = NamedButton(QStringLiteral("Full Screen"), QStringLiteral("cmdFullScreen"),
                                  QStringLiteral("Full Screen mode"), this);
    connect(m_cmdFullScreen, &QPushButton::clicked, this, &DisplayPlace::fullScreenClicked);
    buttons->addWidget(m_cmdFullScreen);
    layout->addLayout(buttons);

    // Lets the click that wrote the page return before the viewer loads it.
    m_tmrPictureWait = new QTimer(this);
    m_tmrPictureWait->setObjectName(QStringLiteral("tmrPictureWait"));
    m_tmrPictureWait->setInterval(10);
    m_tmrPictureWait->setSingleShot(true);
    connect(m_tmrPictureWait, &QTimer::timeout, this, &DisplayPlace::tmrPictureWait_Timer);

    // A new width fits the shown picture again, once the resizing has settled.
    m_refit = new QTimer(this);
    m_refit->setSingleShot(true);
    m_refit->setInterval(150);
    connect(m_refit, &QTimer::timeout, this, &DisplayPlace::refitPicture);

    showSurface(DisplaySurface::Picture);
    if (QFileInfo(m_paths.splashPictureFileSpec).isFile())
        MakeHTMLPageForPicture(m_paths.splashPictureFileSpec);
}

QWidget* DisplayPlace::placeholder(const QString& name) {
    auto* widget = new QWidget(m_stack);
    widget->setObjectName(name + QStringLiteral("Place"));
    widget->setStyleSheet(QStringLiteral("background: black;"));
    return widget;
}

void DisplayPlace::setVideoSurface(QWidget* surface) {
    replaceSurface(DisplaySurface::Video, m_video, surface);
}

void DisplayPlace::setTextSurface(QWidget* surface) {
    replaceSurface(DisplaySurface::Text, m_text, surface);
}

void DisplayPlace::replaceSurface(DisplaySurface which, QWidget*& current, QWidget* surface) {
    const bool shown = currentSurface() == which;
    m_stack->insertWidget(SurfaceIndex(which), surface);
    m_stack->removeWidget(current);
    current->deleteLater();
    current = surface;
    if (shown)
        showSurface(which);
}

void DisplayPlace::showSurface(DisplaySurface surface) {
    m_stack->setCurrentIndex(SurfaceIndex(surface));
    // Another surface asked for after a picture click wins over the picture still loading.
    if (surface != DisplaySurface::Picture)
        m_pictureToFront = false;
    // The window may have been resized while another surface was shown.
    if (surface == DisplaySurface::Picture && !m_lastPicture.isEmpty() &&
        m_pageWidth != m_picture->width())
        refitPicture();
}

DisplaySurface DisplayPlace::currentSurface() const {
    return static_cast<DisplaySurface>(m_stack->currentIndex());
}

bool DisplayPlace::MakeHTMLPageForPicture(const QString& fileSpec) {
    if (!HasPicturePageExtension(fileSpec))
        return false;
    // Only the size is read here; a file that cannot be read keeps the last proportions. Only a
    // regular file is opened: reading a FIFO would wait for a writer that never comes.
    const QSize size = QFileInfo(fileSpec).isFile() ? QImageReader(fileSpec).size() : QSize();
    if (size.isValid() && !size.isEmpty())
        m_pictureSize = size;
    m_lastPicture = fileSpec;
    writePicturePage();
    m_pictureToFront = true;
    m_tmrPictureWait->start();
    return true;
}

void DisplayPlace::writePicturePage() {
    const double twipsPerPixel = 1440.0 / std::max(1, logicalDpiX());
    const int viewerTwips = static_cast<int>(m_picture->width() * twipsPerPixel);
    const PictureFit fit = FitPictureToViewer(viewerTwips, twipsPerPixel, m_pictureSize.width(),
                                              m_pictureSize.height());
    MakeFolderPath(QFileInfo(m_paths.gstrPicturePageFileSpec).absolutePath());
    SaveTextToFile(BuildPicturePage(m_lastPicture, fit), m_paths.gstrPicturePageFileSpec);
    m_pageWidth = m_picture->width();
}

void DisplayPlace::refitPicture() {
    if (m_lastPicture.isEmpty() || currentSurface() != DisplaySurface::Picture)
        return;
    writePicturePage();
    m_picture->showPageFile(m_paths.gstrPicturePageFileSpec);
}

void DisplayPlace::tmrPictureWait_Timer() {
    m_picture->showPageFile(m_paths.gstrPicturePageFileSpec);
    if (m_pictureToFront)
        showSurface(DisplaySurface::Picture);
}

void DisplayPlace::cmdDisplayVideoOrPics_Click(int index) {
    const auto surface = static_cast<DisplaySurface>(index);
    if (surface != DisplaySurface::Text)
        showSurface(surface);
    emit displaySwitchClicked(surface);
}

void DisplayPlace::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_refit->start();
}

} // namespace cq
