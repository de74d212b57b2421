#include "PicturesWindow.h"
#include "app/widgets/frmClipquill.h"
#include "library/FolderListing.h"
#include "library/PicturesWebPage.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "library/widgets/PageViewer.h"
#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "studio/AppPaths.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QImage>
#include <QListWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace cq;

namespace {

using test::FirstImage;
using test::ShownImage;

// The window over a pictures folder of the kinds phones, cameras and scanners leave, made by
// ImageMagick (not by Qt, whose readers are what is being tried).
class PictureTypesWindow : public ::testing::Test {
protected:
    void SetUp() override {
        pictures = app.file("My Pictures");
        QDir().mkpath(pictures);
        const QString convert =
            LocateConvert(AppPaths::forFolder(app.path()).gstrImageMagickFileSpec).path;
        ASSERT_FALSE(convert.isEmpty()) << "ImageMagick is needed";
        for (const auto& [name, size] : kPictures) {
            ToolRunner runner;
            const RunResult r = runner.runProgram(
                convert, {"-size", QStringLiteral("%1x%2").arg(size.width()).arg(size.height()),
                          "xc:teal", JoinPath(pictures, name)});
            ASSERT_TRUE(r.ok()) << name.toStdString() << ": " << r.errorText.toStdString();
        }
        test::OpenStudioOverPictures(window, app, pictures);
    }

    // Each of a shape of its own, so that a picture whose size cannot be read shows up as the
    // proportions of the one before.
    const std::vector<std::pair<QString, QSize>> kPictures{
        {"photo.jpeg", {200, 800}}, {"Phone.WEBP", {800, 200}}, {"scan.tiff", {300, 600}}};

    test::TestAppFolder app;
    QString pictures;
    std::unique_ptr<frmClipquill> window;
};

} // namespace

TEST_F(PictureTypesWindow, JpegWebpAndTiffAreListedAndEachShowsInItsOwnProportions) {
    auto* files = window->findChild<QListWidget*>("File1_2");
    auto* viewer = window->findChild<PageViewer*>("WebBrowserDisplayPic");
    ASSERT_NE(files, nullptr);
    ASSERT_NE(viewer, nullptr);
    ASSERT_EQ(files->count(), int(kPictures.size()));

    for (const auto& [name, size] : kPictures) {
        SCOPED_TRACE(name.toStdString());
        const QList<QListWidgetItem*> found = files->findItems(name, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1);
        QTest::mouseClick(files->viewport(), Qt::LeftButton, {},
                          files->visualItemRect(found.first()).center());
        QTRY_VERIFY_WITH_TIMEOUT(FirstImage(viewer).source.contains(name), 10000);
        const ShownImage shown = FirstImage(viewer);
        EXPECT_NEAR(shown.height, shown.width * size.height() / size.width(), 1);
        EXPECT_EQ(window->displayPlace().currentSurface(), DisplaySurface::Picture);
        // The viewer decodes the picture itself, not only its size.
        const QVariant image =
            viewer->document()->resource(QTextDocument::ImageResource, QUrl(shown.source));
        ASSERT_TRUE(image.canConvert<QImage>());
        EXPECT_EQ(image.value<QImage>().size(), size);
    }
}
