#include "PicturesWindow.h"
#include "app/widgets/MediaStation.h"
#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "library/FolderListing.h"
#include "library/PicturesWebPage.h"
#include "library/playback/MediaPlayer.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "library/widgets/PageViewer.h"
#include "support/TestAppFolder.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace cq;

namespace {

void MakePicture(const QString& path, int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    ASSERT_TRUE(image.save(path)) << path.toStdString();
}

using test::FirstImage;
using test::ShownImage;

class LibraryWindow : public ::testing::Test {
protected:
    void SetUp() override {
        pictures = app.file(QString::fromUtf8("My Pictures/Zoë's & <Trip>"));
        QDir().mkpath(pictures);
        MakePicture(JoinPath(pictures, "HOLIDAY.JPG"), 400, 1600);
        MakePicture(JoinPath(pictures, "beach 2.jpg"), 800, 600);
        test::OpenStudioOverPictures(window, app, pictures);
    }

    template <typename T> T* child(const char* name) {
        T* widget = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    test::TestAppFolder app;
    QString pictures;
    std::unique_ptr<frmClipquill> window;
};

} // namespace

TEST_F(LibraryWindow, ClickingAPicturesFileShowsItFittedToTheViewer) {
    auto* files = child<QListWidget>("File1_2");
    ASSERT_NE(files, nullptr);
    ASSERT_EQ(files->count(), 2);
    EXPECT_EQ(window->directorySettings().gstrMyPicturesDirectory, pictures);

    const QList<QListWidgetItem*> found = files->findItems("HOLIDAY.JPG", Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    QTest::mouseClick(files->viewport(), Qt::LeftButton, {},
                      files->visualItemRect(found.first()).center());
    auto* viewer = child<PageViewer>("WebBrowserDisplayPic");
    ASSERT_NE(viewer, nullptr);
    QTRY_COMPARE(FirstImage(viewer).source.contains("HOLIDAY.JPG"), true);
    const ShownImage shown = FirstImage(viewer);
    const int expectedWidth = int((viewer->width() * 15 - 1000) / 15.0);
    EXPECT_NEAR(shown.width, expectedWidth, 1);
    EXPECT_EQ(shown.height, shown.width * 4);
    EXPECT_EQ(window->displayPlace().currentSurface(), DisplaySurface::Picture);
    EXPECT_EQ(window->displayPlace().lastPicture(), JoinPath(pictures, "HOLIDAY.JPG"));

    // A narrower window fits the picture again.
    window->resize(1000, 800);
    QTRY_VERIFY(FirstImage(viewer).width != shown.width);
    EXPECT_NEAR(FirstImage(viewer).width, int((viewer->width() * 15 - 1000) / 15.0), 1);
}

TEST_F(LibraryWindow, ThumbnailPageShowsAndAThumbnailClickShowsThePicture) {
    auto* viewPics = child<QPushButton>("cmdViewPics");
    ASSERT_NE(viewPics, nullptr);
    QTest::mouseClick(viewPics, Qt::LeftButton);
    auto* thumbs = child<PageViewer>("WebBrowserPics");
    ASSERT_NE(thumbs, nullptr);
    EXPECT_TRUE(thumbs->isVisible());
    EXPECT_FALSE(child<QListWidget>("File1_2")->isVisible());
    EXPECT_TRUE(
        QFileInfo::exists(app.file(QString::fromUtf8("SmallPics/Zoë's & <Trip>/beach 2.jpg"))));

    // Click the first anchor where the viewer draws it.
    QTextCursor cursor(thumbs->document());
    cursor.movePosition(QTextCursor::NextCharacter);
    const QPoint at = thumbs->cursorRect(cursor).center() - QPoint(20, 0);
    ASSERT_FALSE(thumbs->anchorAt(at).isEmpty());
    QTest::mouseClick(thumbs->viewport(), Qt::LeftButton, {}, at);
    QTRY_COMPARE(window->displayPlace().lastPicture(), JoinPath(pictures, "beach 2.jpg"));
    QTRY_COMPARE(FirstImage(window->displayPlace().pictureViewer()).source.contains("beach 2.jpg"),
                 true);

    QTest::mouseClick(viewPics, Qt::LeftButton);
    EXPECT_FALSE(thumbs->isVisible());

    // A picture added since gets its thumbnail the next time the page is shown.
    MakePicture(JoinPath(pictures, "added.jpg"), 640, 480);
    QTest::mouseClick(viewPics, Qt::LeftButton);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !window->mediaBrowser().picturesPage().isBusy(); }, 60000));
    EXPECT_TRUE(
        QFileInfo::exists(app.file(QString::fromUtf8("SmallPics/Zoë's & <Trip>/added.jpg"))));
    EXPECT_TRUE(thumbs->toHtml().contains("added.jpg"));
    EXPECT_EQ(child<QListWidget>("File1_2")->count(), 3);
}

namespace {
// Where the viewer draws the anchor whose link ends with the name.
QPoint AnchorPoint(PageViewer* viewer, const QString& name) {
    for (QTextBlock block = viewer->document()->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it)
            if (it.fragment().charFormat().anchorHref().endsWith(name)) {
                QTextCursor cursor(viewer->document());
                cursor.setPosition(it.fragment().position());
                const QRect start = viewer->cursorRect(cursor);
                cursor.setPosition(it.fragment().position() + it.fragment().length());
                const QRect end = viewer->cursorRect(cursor);
                return {(start.left() + end.left()) / 2, start.center().y()};
            }
    return {-1, -1};
}
} // namespace

TEST_F(LibraryWindow, AVideoThumbnailPlaysInTheDisplayPlaceAndIsLogged) {
    const QString clip = JoinPath(pictures, "surf clip.avi");
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg", {"-hide_banner", "-loglevel", "error", "-f", "lavfi", "-i",
                            "testsrc=size=160x120:rate=25:duration=4", "-c:v", "mpeg4", clip});
    ASSERT_TRUE(ffmpeg.waitForFinished(30000));
    ASSERT_EQ(ffmpeg.exitCode(), 0) << ffmpeg.readAllStandardError().toStdString();
    ASSERT_TRUE(window->mediaBrowser().showFolder(MediaTabId::Pictures, pictures));
    QTest::mouseClick(child<QPushButton>("cmdViewPics"), Qt::LeftButton);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !window->mediaBrowser().picturesPage().isBusy(); }, 60000));
    auto* thumbs = child<PageViewer>("WebBrowserPics");
    QTRY_VERIFY(thumbs->toHtml().contains("surf clip.avi"));
    const QPoint at = AnchorPoint(thumbs, "surf clip.avi");
    ASSERT_TRUE(thumbs->anchorAt(at).endsWith("surf clip.avi"));

    window->timeline().logger().setRecording(true);
    QTest::mouseClick(thumbs->viewport(), Qt::LeftButton, {}, at);
    window->timeline().logger().setRecording(false);
    MediaPlayer* video = window->media().videoPlayer();
    EXPECT_EQ(video->URL(), clip);
    EXPECT_EQ(window->displayPlace().currentSurface(), DisplaySurface::Video);
    const EventGridModel& grid = window->timeline().grid();
    ASSERT_EQ(grid.rowCount(), 1) << "logged once";
    EXPECT_EQ(grid.row(0).kind, MediaKind::Video);
    EXPECT_EQ(grid.row(0).file, clip);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return video->playState() == static_cast<int>(PlayState::Playing); }, 10000))
        << "play state " << video->playState();
}

TEST_F(LibraryWindow, FolderChangesReachTheSettingsAndVanishedFoldersChangeNothing) {
    MediaBrowser& browser = window->mediaBrowser();
    const QString other = app.file("Elsewhere");
    QDir().mkpath(other);
    test::WriteFile(JoinPath(other, "a.mp4"), "x");
    ASSERT_TRUE(browser.showFolder(MediaTabId::Other1, other));
    EXPECT_EQ(window->directorySettings().gstrMyStdPicturesDirectory1, other);
    ASSERT_TRUE(browser.showFolder(MediaTabId::SoundEffects, other)); // a tab that stores nothing
    EXPECT_EQ(window->directorySettings().gstrMyStdPicturesDirectory1, other);
    EXPECT_NE(window->directorySettings().gstrMyVideoDirectory, other);

    auto* files = child<QListWidget>("File1_2");
    EXPECT_FALSE(browser.showFolder(MediaTabId::Pictures, app.file("No Such Folder")));
    EXPECT_EQ(files->count(), 2);
    EXPECT_EQ(window->directorySettings().gstrMyPicturesDirectory, pictures);

    // The folder pane: "View" shows it, a second click hides it again; tab 4 has none.
    auto* view = child<QPushButton>("cmdView_2");
    auto* dirs = child<QListWidget>("Dir1_2");
    EXPECT_FALSE(dirs->isVisible());
    QTest::mouseClick(view, Qt::LeftButton);
    EXPECT_TRUE(dirs->isVisible());
    EXPECT_TRUE(child<QPushButton>("cmdOpenFolder_2")->isVisible());
    QTest::mouseClick(view, Qt::LeftButton);
    EXPECT_FALSE(dirs->isVisible());
    EXPECT_EQ(window->findChild<QListWidget*>("Dir1_4"), nullptr);

    // Walking up from the Pictures folder with the folder list.
    QTest::mouseClick(view, Qt::LeftButton);
    ASSERT_EQ(dirs->item(0)->text(), "..");
    dirs->setCurrentRow(0);
    QTest::keyClick(dirs, Qt::Key_Return);
    EXPECT_EQ(window->directorySettings().gstrMyPicturesDirectory.toStdString(),
              app.file("My Pictures").toStdString());
}

TEST_F(LibraryWindow, LargeFoldersListEveryMediaFileAndEnterShowsTheSelectedPicture) {
    const QString big = app.file("Big");
    for (int i = 0; i < 5000; ++i)
        test::WriteFile(JoinPath(big, QStringLiteral("clip %1.MP4").arg(i)), {});
    test::WriteFile(JoinPath(big, "readme.txt"), "x");
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(window->mediaBrowser().showFolder(MediaTabId::Video, big));
    RecordProperty("list_5000_ms", int(timer.elapsed()));
    EXPECT_EQ(child<QListWidget>("File1_0")->count(), 5000);

    auto* files = child<QListWidget>("File1_2");
    files->setCurrentRow(files->count() - 1); // HOLIDAY.JPG sorts after "beach 2.jpg"
    files->setFocus();
    QTest::keyClick(files, Qt::Key_Return);
    QTRY_COMPARE(window->displayPlace().lastPicture(), JoinPath(pictures, "HOLIDAY.JPG"));
}

TEST_F(LibraryWindow, DisplayButtonsSwitchTheSurfaceAndSoundEffectsAreListed) {
    QTest::mouseClick(child<QPushButton>("cmdDisplayVideoOrPics_0"), Qt::LeftButton);
    EXPECT_EQ(window->displayPlace().currentSurface(), DisplaySurface::Video);
    QTest::mouseClick(child<QPushButton>("cmdDisplayVideoOrPics_1"), Qt::LeftButton);
    EXPECT_EQ(window->displayPlace().currentSurface(), DisplaySurface::Picture);
    // The sound effects of the installation are listed on their tab.
    EXPECT_GT(child<QListWidget>("File1_3")->count(), 0);
}
