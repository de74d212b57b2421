#include "render/PictureFit.h"

#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {
PicSegment segmentFor(const QTemporaryDir& dir, const QString& picture) {
    SegmentContext ctx;
    ctx.ffmpeg = QStringLiteral("ffmpeg");
    ctx.gstrTempFilesDirectory = dir.path();
    return MakeAVIFromPic(ctx, picture, dir.filePath("1.avi"), 3);
}
} // namespace

TEST(PictureFit, PortraitPictureIsCentredBetweenBlackBars) {
    QTemporaryDir dir;
    const QString pic = dir.filePath("Tall.jpg");
    QImage tall(480, 640, QImage::Format_RGB32);
    tall.fill(Qt::red);
    ASSERT_TRUE(tall.save(pic, "JPG"));
    const PicSegment s = segmentFor(dir, pic);
    QString error;
    ASSERT_TRUE(PrepareFittedFrame(pic, s, dir.filePath("Black.bmp"), &error))
        << error.toStdString();
    EXPECT_TRUE(QFileInfo::exists(s.bitmapCopy));
    EXPECT_TRUE(QFileInfo::exists(dir.filePath("Black.bmp")));
    const QImage fitted(s.fittedFrame);
    ASSERT_EQ(fitted.size(), QSize(854, 640));
    EXPECT_EQ(QColor(fitted.pixel(10, 320)), QColor(Qt::black));
    EXPECT_EQ(QColor(fitted.pixel(843, 320)), QColor(Qt::black));
    EXPECT_GT(QColor(fitted.pixel(427, 320)).red(), 200);
    EXPECT_GT(QColor(fitted.pixel(190, 5)).red(), 200); // the picture starts at (854-480)/2
}

TEST(PictureFit, ExactFourByThreeBitmapIsItsOwnFrameAndUnreadableFilesAreReported) {
    QTemporaryDir dir;
    QTemporaryDir pictures;
    const QString pic = pictures.filePath("Wide.bmp");
    QImage img(640, 480, QImage::Format_RGB32);
    img.fill(Qt::blue);
    ASSERT_TRUE(img.save(pic, "BMP"));
    const PicSegment s = segmentFor(dir, pic);
    ASSERT_TRUE(PrepareFittedFrame(pic, s, dir.filePath("Black.bmp")));
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("Black.bmp")));
    EXPECT_FALSE(QFileInfo::exists(s.bitmapCopy)); // a BMP is read as it is
    EXPECT_EQ(QImage(s.fittedFrame).size(), QSize(640, 480));

    QString error;
    EXPECT_FALSE(PrepareFittedFrame(dir.filePath("none.jpg"),
                                    segmentFor(dir, dir.filePath("none.jpg")),
                                    dir.filePath("Black.bmp"), &error));
    EXPECT_TRUE(error.contains("none.jpg"));
}
