// Prints how long the thumbnail page of 60 pictures of 1920x1080 takes to build: cold (no
// thumbnails yet) against one sequential "convert -resize 134X100" per picture, and warm (every
// thumbnail fresh). Usage: thumbnail_bench [convert]
#include "library/FolderListing.h"
#include "library/PicturesWebPage.h"
#include "platform/ToolPool.h"
#include "platform/ToolRunner.h"
#include "studio/AppPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>

using namespace cq;

namespace {

constexpr int kPictures = 60;

// A photo-like picture: smooth gradients with noise, so the JPEG has a realistic size.
QImage MakePicture(int seed) {
    QImage image(1920, 1080, QImage::Format_RGB32);
    QRandomGenerator random(static_cast<quint32>(seed));
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int noise = static_cast<int>(random.bounded(40));
            line[x] = qRgb((x / 8 + seed * 13 + noise) & 255, (y / 5 + noise) & 255,
                           ((x + y) / 12 + seed * 29) & 255);
        }
    }
    return image;
}

double Seconds(const QElapsedTimer& timer) {
    return timer.nsecsElapsed() / 1e9;
}

// The bench has no window: it may wait for the page in a loop of its own.
void waitUntilWritten(PicturesWebPage& page) {
    while (page.isBusy()) {
        QEventLoop loop;
        QObject::connect(&page, &PicturesWebPage::pageWritten, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

QString findConvert(int argc, char** argv) {
    QString convert = argc > 1 ? QString::fromLocal8Bit(argv[1])
                               : QStandardPaths::findExecutable(QStringLiteral("convert"),
                                                                {QStringLiteral("/usr/bin")});
    return convert.isEmpty() ? QStandardPaths::findExecutable(QStringLiteral("convert")) : convert;
}

void makePictures(const QString& folder) {
    std::printf("Making %d pictures of 1920x1080...\n", kPictures);
    for (int i = 0; i < kPictures; ++i)
        MakePicture(i).save(
            JoinPath(folder, QStringLiteral("picture %1.jpg").arg(i, 2, 10, QChar(u'0'))), "JPEG",
            90);
}

// The reference: one picture-tool process per picture, one after another. -1 when one failed.
double timeSequential(const QString& convert, const QString& folder, const QStringList& entries,
                      const QString& out) {
    QElapsedTimer timer;
    timer.start();
    ToolRunner runner;
    for (const QString& entry : entries) {
        const RunResult result =
            runner.runProgram(convert, {JoinPath(folder, entry), QStringLiteral("-resize"),
                                        QStringLiteral("134X100"), JoinPath(out, entry)});
        if (!result.ok()) {
            std::fprintf(stderr, "convert failed: %s\n", qPrintable(result.errorText));
            return -1;
        }
    }
    return Seconds(timer);
}

double timePage(PicturesWebPage& page, const QString& folder, const QStringList& entries) {
    QElapsedTimer timer;
    timer.start();
    page.RefreshPicturesWebPage(folder, entries);
    waitUntilWritten(page);
    return Seconds(timer);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QString convert = findConvert(argc, argv);
    if (convert.isEmpty()) {
        std::fprintf(stderr, "convert (Debian package imagemagick) is needed\n");
        return 1;
    }
    QTemporaryDir root;
    const AppPaths paths = AppPaths::forFolder(root.path());
    QDir().mkpath(paths.gstrSmallPicsDirectory);
    QDir().mkpath(QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath());
    const QString folder = root.filePath(QStringLiteral("Pictures"));
    const QString sequentialOut = root.filePath(QStringLiteral("sequential"));
    QDir().mkpath(folder);
    QDir().mkpath(sequentialOut);
    makePictures(folder);
    const QStringList entries = ListMediaFiles(folder);
    const double sequential = timeSequential(convert, folder, entries, sequentialOut);
    if (sequential < 0)
        return 1;
    ToolPool pool;
    PicturesWebPage page(paths, pool, convert);
    const double cold = timePage(page, folder, entries);
    const int made = QDir(JoinPath(paths.gstrSmallPicsDirectory, QStringLiteral("Pictures")))
                         .entryList(QDir::Files)
                         .size();
    const double warm = timePage(page, folder, entries);
    std::printf("cores: %d, pictures: %d, thumbnails made: %d\n", QThread::idealThreadCount(),
                kPictures, made);
    std::printf("sequential convert per picture: %.3f s (%.1f ms each)\n", sequential,
                sequential * 1000 / kPictures);
    std::printf("cold page (all thumbnails made): %.3f s, ratio %.2f (goal <= 0.50)\n", cold,
                cold / sequential);
    std::printf("warm page (all thumbnails fresh): %.3f s (goal < 0.200 s), ratio %.3f\n", warm,
                warm / sequential);
    return made == kPictures ? 0 : 1;
}
