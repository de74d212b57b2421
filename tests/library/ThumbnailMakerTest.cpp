#include "library/ThumbnailMaker.h"
#include "library/FolderListing.h"
#include "library/PicturesWebPage.h"
#include "platform/TextFiles.h"
#include "platform/ToolLocator.h"

#include "support/TestAppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QThread>

#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

void MakePicture(const QString& path, int width, int height, QRgb colour) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(path)) << path.toStdString();
}

QDateTime Modified(const QString& path) {
    return QFileInfo(path).lastModified();
}

class Thumbnails : public ::testing::Test {
protected:
    void SetUp() override {
        paths = AppPaths::forFolder(app.path());
        QDir().mkpath(paths.gstrSmallPicsDirectory);
        QDir().mkpath(QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath());
        convert = LocateConvert(paths.gstrImageMagickFileSpec).path;
        ASSERT_FALSE(convert.isEmpty()) << "ImageMagick is needed";
        folder = app.file(QString::fromUtf8("Pictures/Holiday 'x'"));
        QDir().mkpath(folder);
    }

    test::TestAppFolder app;
    AppPaths paths;
    QString convert;
    QString folder;
};

} // namespace

TEST_F(Thumbnails, AreMadeForRealOnlyWhenMissingOrOlderThanThePicture) {
    const QStringList names{QStringLiteral("wide.jpg"), QString::fromUtf8("zoë $(touch pwned).jpg"),
                            QStringLiteral("it's `a` [1] %d.png"), QStringLiteral("tall.bmp")};
    MakePicture(JoinPath(folder, names[0]), 800, 600, qRgb(200, 0, 0));
    MakePicture(JoinPath(folder, names[1]), 1920, 1080, qRgb(0, 200, 0));
    MakePicture(JoinPath(folder, names[2]), 300, 300, qRgb(0, 0, 200));
    MakePicture(JoinPath(folder, names[3]), 100, 400, qRgb(9, 9, 9));
    const QString thumbs = JoinPath(paths.gstrSmallPicsDirectory, "Holiday 'x'");
    QDir().mkpath(thumbs);

    ThumbnailMaker maker(convert, paths.gstrImageMagickScriptFileSpec);
    maker.setParallelJobs(2);
    QList<int> progress;
    QObject::connect(&maker, &ThumbnailMaker::progress,
                     [&](int done, int) { progress.append(done); });
    ASSERT_TRUE(maker.start(PlanThumbnails(folder, names, thumbs)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !maker.isRunning(); }, 60000));
    EXPECT_FALSE(maker.wasCancelled());
    EXPECT_TRUE(maker.failedPictures().isEmpty())
        << maker.failedPictures().join(u'|').toStdString();
    EXPECT_EQ(progress.size(), 4);

    // Each fits inside 134 x 100 with its proportions, in the format of its name.
    const QSize expected[] = {{133, 100}, {134, 75}, {100, 100}, {25, 100}};
    for (int i = 0; i < names.size(); ++i) {
        QImageReader reader(JoinPath(thumbs, names[i]));
        EXPECT_EQ(reader.size(), expected[i]) << names[i].toStdString();
    }
    EXPECT_EQ(QImageReader(JoinPath(thumbs, names[2])).format(), "png");
    EXPECT_FALSE(QFileInfo::exists(QDir::current().filePath("pwned")));
    EXPECT_FALSE(QFileInfo::exists(JoinPath(folder, "pwned")));
    // No temporary pieces or scripts are left behind.
    EXPECT_EQ(QDir(thumbs).entryList(QDir::Files | QDir::Hidden).size(), 4);
    EXPECT_FALSE(QFileInfo::exists(paths.gstrImageMagickScriptFileSpec));

    // All fresh: nothing to do. A picture changed later is made again, alone.
    EXPECT_TRUE(PlanThumbnails(folder, names, thumbs).isEmpty());
    const QString changed = JoinPath(folder, names[0]);
    QFile file(changed);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(Modified(JoinPath(thumbs, names[0])).addSecs(5),
                     QFileDevice::FileModificationTime);
    file.close();
    const QList<ThumbnailJob> again = PlanThumbnails(folder, names, thumbs);
    ASSERT_EQ(again.size(), 1);
    EXPECT_EQ(again.first().picture, changed);
}

TEST_F(Thumbnails, UnreadablePicturesGetNoneAndThePageStillShowsEveryEntry) {
    MakePicture(JoinPath(folder, "good.jpg"), 640, 480, qRgb(1, 2, 3));
    test::WriteFile(JoinPath(folder, "empty.jpg"), {});
    test::WriteFile(JoinPath(folder, "corrupt.jpg"), QByteArray(4096, 'z'));
    test::WriteFile(JoinPath(folder, "tune.mp3"), "ID3");
    const QStringList entries = ListMediaFiles(folder);

    PicturesWebPage pages(paths, convert);
    bool cancelled = true;
    QStringList failed;
    QObject::connect(&pages, &PicturesWebPage::pageWritten,
                     [&](bool wasCancelled, const QStringList& failures) {
                         cancelled = wasCancelled;
                         failed = failures;
                     });
    pages.PreLoadPicsIntoBrowser(folder, entries);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !pages.isBusy(); }, 60000));
    EXPECT_FALSE(cancelled);
    failed.sort();
    EXPECT_EQ(failed,
              (QStringList{JoinPath(folder, "corrupt.jpg"), JoinPath(folder, "empty.jpg")}));

    const QString thumbs = JoinPath(paths.gstrSmallPicsDirectory, "Holiday 'x'");
    EXPECT_EQ(QDir(thumbs).entryList(QDir::Files | QDir::Hidden), QStringList{"good.jpg"});
    const QString page = ReadFileToString(paths.gstrPicturesPageFileSpec);
    EXPECT_EQ(page.count(QStringLiteral("<a href=")), 4);

    // The failures are not tried again while they stay as they are; the folder is remembered.
    EXPECT_TRUE(
        pages.maker().withoutKnownFailures(PlanThumbnails(folder, entries, thumbs)).isEmpty());
    EXPECT_EQ(pages.rememberedPicturesPath(), folder);
}

TEST_F(Thumbnails, CancelStopsTheRunAndLeavesNoHalfThumbnails) {
    QStringList names;
    for (int i = 0; i < 40; ++i) {
        names.append(QStringLiteral("p%1.jpg").arg(i));
        MakePicture(JoinPath(folder, names.last()), 1920, 1080, qRgb(i, 50, 90));
    }
    const QString thumbs = JoinPath(paths.gstrSmallPicsDirectory, "Holiday 'x'");
    QDir().mkpath(thumbs);
    ThumbnailMaker maker(convert, paths.gstrImageMagickScriptFileSpec);
    QObject::connect(&maker, &ThumbnailMaker::progress, [&](int done, int) {
        if (done == 2)
            maker.cancel();
    });
    ASSERT_TRUE(maker.start(PlanThumbnails(folder, names, thumbs)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !maker.isRunning(); }, 60000));
    EXPECT_TRUE(maker.wasCancelled());
    const QStringList made = QDir(thumbs).entryList(QDir::Files | QDir::Hidden);
    EXPECT_LT(made.size(), 40);
    for (const QString& name : made) {
        EXPECT_FALSE(name.startsWith(u'.')) << name.toStdString();
        EXPECT_FALSE(QImageReader(JoinPath(thumbs, name)).size().isEmpty());
    }
    // What was not made is still due.
    EXPECT_EQ(PlanThumbnails(folder, names, thumbs).size(), 40 - made.size());
}
