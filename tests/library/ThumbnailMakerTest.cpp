#include "library/ThumbnailMaker.h"
#include "library/FolderListing.h"
#include "library/PicturesWebPage.h"
#include "platform/TextFiles.h"
#include "platform/ToolLocator.h"

#include "support/LiveProcesses.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QThread>
#include <QtEndian>

#include <QTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace cq;

namespace {

void MakePicture(const QString& path, int width, int height, QRgb colour) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(path)) << path.toStdString();
}

// A PNG of one-bit pixels, all blank: tiny on disk, however large its canvas.
QByteArray BlankPng(quint32 width, quint32 height) {
    auto crc = [](const QByteArray& bytes) {
        quint32 c = 0xFFFFFFFFu;
        for (char byte : bytes) {
            c ^= static_cast<quint8>(byte);
            for (int k = 0; k < 8; ++k)
                c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
        }
        return ~c;
    };
    auto chunk = [&](const QByteArray& type, const QByteArray& data) {
        QByteArray out(4, 0);
        qToBigEndian(static_cast<quint32>(data.size()), out.data());
        QByteArray tail(4, 0);
        qToBigEndian(crc(type + data), tail.data());
        return out + type + data + tail;
    };
    QByteArray header(13, 0);
    qToBigEndian(width, header.data());
    qToBigEndian(height, header.data() + 4);
    header[8] = 1; // bit depth; colour type 0 (grey), no interlace
    const QByteArray rows(static_cast<qsizetype>(height) * (1 + (width + 7) / 8), 0);
    const QByteArray zlib = qCompress(rows, 9).mid(4); // qCompress puts the length first
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) + chunk("IDAT", zlib) +
           chunk("IEND", {});
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

    // What a run left in the work space: the temporary folders of the picture tool's runs.
    QStringList leftInWorkSpace() const {
        return QDir(QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QString workSpace() const {
        return QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath();
    }

    test::TestAppFolder app;
    ToolPool pool{2};
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

    ThumbnailMaker maker(pool, convert, workSpace());
    QList<int> progress;
    QObject::connect(&maker, &ThumbnailMaker::progressed,
                     [&](int percent) { progress.append(percent); });
    ASSERT_TRUE(maker.start(PlanThumbnails(folder, names, thumbs)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !maker.isRunning(); }, 60000));
    EXPECT_TRUE(maker.lastEnd().isDone());
    EXPECT_TRUE(maker.failedPictures().isEmpty()) << maker.failures().value(0).reason.toStdString();
    EXPECT_EQ(progress, QList<int>({0, 25, 50, 75, 100}));

    // Each fits inside 134 x 100 with its proportions, in the format of its name.
    const QSize expected[] = {{133, 100}, {134, 75}, {100, 100}, {25, 100}};
    for (int i = 0; i < names.size(); ++i) {
        QImageReader reader(JoinPath(thumbs, names[i]));
        EXPECT_EQ(reader.size(), expected[i]) << names[i].toStdString();
    }
    EXPECT_EQ(QImageReader(JoinPath(thumbs, names[2])).format(), "png");
    EXPECT_FALSE(QFileInfo::exists(QDir::current().filePath("pwned")));
    EXPECT_FALSE(QFileInfo::exists(JoinPath(folder, "pwned")));
    // No temporary pieces, scripts or tool files are left behind.
    EXPECT_EQ(QDir(thumbs).entryList(QDir::Files | QDir::Hidden).size(), 4);
    EXPECT_TRUE(test::Eventually([&] { return leftInWorkSpace().isEmpty(); }, 5000))
        << leftInWorkSpace().join(u'|').toStdString();

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

TEST_F(Thumbnails, PicturesThatGetNoneAreNamedWithTheReasonOnThePageAndNotTriedAgain) {
    MakePicture(JoinPath(folder, "good.jpg"), 640, 480, qRgb(1, 2, 3));
    test::WriteFile(JoinPath(folder, "empty.jpg"), {});
    test::WriteFile(JoinPath(folder, "corrupt.jpg"), QByteArray(4096, 'z'));
    test::WriteFile(JoinPath(folder, "tune.mp3"), "ID3");
    // 40 KB that would decode to 256 megapixels: two gigabytes of pixel cache.
    test::WriteFile(JoinPath(folder, "bomb <b>.png"), BlankPng(16000, 16000));
    // Listed by an older listing or swapped in since: the tool must never read them.
    ASSERT_TRUE(QFile::link("/dev/zero", JoinPath(folder, "zero.jpg")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(JoinPath(folder, "fifo.png")).constData(), 0644), 0);
    const QStringList entries{"bomb <b>.png", "corrupt.jpg", "empty.jpg", "fifo.png",
                              "good.jpg",     "tune.mp3",    "zero.jpg"};

    PicturesWebPage pages(paths, pool, convert);
    bool cancelled = true;
    QList<ThumbnailFailure> failed;
    QObject::connect(&pages, &PicturesWebPage::pageWritten,
                     [&](bool wasCancelled, const QList<ThumbnailFailure>& failures) {
                         cancelled = wasCancelled;
                         failed = failures;
                     });
    QElapsedTimer clock;
    clock.start();
    pages.PreLoadPicsIntoBrowser(folder, entries);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !pages.isBusy(); }, 60000));
    EXPECT_LT(clock.elapsed(), 30000) << "the bomb is refused, not decoded";
    EXPECT_FALSE(cancelled);
    QHash<QString, QString> reasons;
    for (const ThumbnailFailure& failure : failed)
        reasons.insert(QFileInfo(failure.picture).fileName(), failure.reason);
    EXPECT_EQ(reasons.size(), 5);
    EXPECT_TRUE(reasons.value("bomb <b>.png").contains("resources"))
        << reasons.value("bomb <b>.png").toStdString();
    EXPECT_EQ(reasons.value("zero.jpg"), "not a regular file: a device");
    EXPECT_EQ(reasons.value("fifo.png"), "not a regular file: a FIFO");
    EXPECT_EQ(reasons.value("corrupt.jpg"), "no decode delegate for this image format");
    EXPECT_EQ(reasons.value("empty.jpg"), "an empty file");

    const QString thumbs = JoinPath(paths.gstrSmallPicsDirectory, "Holiday 'x'");
    EXPECT_EQ(QDir(thumbs).entryList(QDir::Files | QDir::Hidden), QStringList{"good.jpg"});
    const QString page = ReadFileToString(paths.gstrPicturesPageFileSpec);
    EXPECT_EQ(page.count(QStringLiteral("<a href=")), 7);
    EXPECT_TRUE(page.contains("No thumbnail for bomb &lt;b&gt;.png (")) << page.toStdString();
    EXPECT_TRUE(page.contains("zero.jpg (not a regular file: a device)"));
    EXPECT_TRUE(test::Eventually([&] { return leftInWorkSpace().isEmpty(); }, 5000))
        << leftInWorkSpace().join(u'|').toStdString();

    // The failures are not tried again while they stay as they are, yet the page still names
    // them; the folder is remembered.
    EXPECT_TRUE(
        pages.maker().withoutKnownFailures(PlanThumbnails(folder, entries, thumbs)).isEmpty());
    EXPECT_EQ(pages.rememberedPicturesPath(), folder);
    failed.clear();
    pages.RefreshPicturesWebPage(folder, entries);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !pages.isBusy(); }, 60000));
    EXPECT_EQ(failed.size(), 5);
    EXPECT_TRUE(ReadFileToString(paths.gstrPicturesPageFileSpec).contains("No thumbnail for"));
}

TEST_F(Thumbnails, CancelStopsTheRunAndLeavesNoHalfThumbnails) {
    QStringList names;
    for (int i = 0; i < 40; ++i) {
        names.append(QStringLiteral("p%1.jpg").arg(i));
        MakePicture(JoinPath(folder, names.last()), 1920, 1080, qRgb(i, 50, 90));
    }
    const QString thumbs = JoinPath(paths.gstrSmallPicsDirectory, "Holiday 'x'");
    QDir().mkpath(thumbs);
    ThumbnailMaker maker(pool, convert, workSpace());
    QObject::connect(&maker, &ThumbnailMaker::progressed, [&](int percent) {
        if (percent == 5)
            maker.cancel();
    });
    ASSERT_TRUE(maker.start(PlanThumbnails(folder, names, thumbs)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !maker.isRunning(); }, 60000));
    EXPECT_TRUE(maker.lastEnd().isCancelled());
    const QStringList made = QDir(thumbs).entryList(QDir::Files | QDir::Hidden);
    EXPECT_LT(made.size(), 40);
    for (const QString& name : made) {
        EXPECT_FALSE(name.startsWith(u'.')) << name.toStdString();
        EXPECT_FALSE(QImageReader(JoinPath(thumbs, name)).size().isEmpty());
    }
    // What was not made is still due, and the stopped tools' files went with their runs.
    EXPECT_EQ(PlanThumbnails(folder, names, thumbs).size(), 40 - made.size());
    EXPECT_TRUE(maker.failures().isEmpty());
    EXPECT_TRUE(test::Eventually([&] { return leftInWorkSpace().isEmpty(); }, 5000))
        << leftInWorkSpace().join(u'|').toStdString();

    // A maker that goes (its page closed) takes its work out of the shared pool with it.
    auto gone = std::make_unique<ThumbnailMaker>(pool, convert, workSpace());
    ASSERT_TRUE(gone->start(PlanThumbnails(folder, names, thumbs)));
    gone.reset();
    EXPECT_TRUE(test::Eventually([&] { return !pool.isBusy(); }, 10000));
    EXPECT_GE(PlanThumbnails(folder, names, thumbs).size(), 30);
}
