#include "library/FolderListing.h"
#include "library/MediaTyping.h"
#include "library/PicturePages.h"
#include "library/ThumbnailMaker.h"
#include "platform/ToolLocator.h"
#include "platform/ToolPool.h"
#include "platform/ToolRunner.h"
#include "studio/AppPaths.h"

#include "support/TestAppFolder.h"

#include <QDir>
#include <QImageReader>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

using namespace cq;

namespace {

// A folder of real media files, one of every common type, made by ffmpeg the way a camera, a
// phone, a screenshot tool or a download would leave them; some with upper-case extensions.
class MediaFolder : public ::testing::Test {
protected:
    void SetUp() override {
        paths = AppPaths::forFolder(app.path());
        ffmpeg = LocateFfmpeg(paths.gstrFFMPEGFileSpec).path;
        convert = LocateConvert(paths.gstrImageMagickFileSpec).path;
        ASSERT_FALSE(ffmpeg.isEmpty()) << "ffmpeg is needed";
        ASSERT_FALSE(convert.isEmpty()) << "ImageMagick is needed";
        folder = app.file("Media");
        QDir().mkpath(folder);
        QDir().mkpath(paths.gstrSmallPicsDirectory);
        QDir().mkpath(QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath());
    }

    void make(const QString& name, MediaKind kind, const QStringList& extra = {}) {
        QStringList args{"-nostdin", "-v", "error", "-f", "lavfi"};
        if (kind == MediaKind::Audio)
            args << "-i"
                 << "sine=d=0.3";
        else if (kind == MediaKind::Video)
            args << "-i"
                 << "color=teal:s=176x144:r=25:d=0.3";
        else
            args << "-i"
                 << "color=teal:s=134x100"
                 << "-frames:v"
                 << "1"
                 << "-update"
                 << "1";
        args << extra << "-y" << JoinPath(folder, name);
        ToolRunner runner;
        const RunResult r = runner.runProgram(ffmpeg, args);
        ASSERT_TRUE(r.ok()) << name.toStdString() << ": " << r.errorText.toStdString();
        made[name] = kind;
    }

    void makeAll() {
        for (const char* name : {"a.jpg", "b.JPEG", "shot.png", "c.gif", "d.BMP", "e.tif",
                                 "scan.tiff", "f.webp", "G.WebP"})
            make(name, MediaKind::Pictures);
        for (const char* name : {"a.flv", "b.mp4", "c.mpg", "d.mpeg", "e.avi", "f.wmv", "g.3gp",
                                 "h.asf", "i.mov", "j.mkv", "k.WEBM", "l.m4v", "m.mts", "n.ogv"})
            make(name, MediaKind::Video);
        make("o.qtm", MediaKind::Video, {"-f", "mov"});
        for (const char* name :
             {"a.mp3", "b.wav", "c.wma", "d.aac", "e.flac", "f.ogg", "g.opus", "h.M4A"})
            make(name, MediaKind::Audio);
        make("i.qt", MediaKind::Audio, {"-f", "mov"});
    }

    test::TestAppFolder app;
    AppPaths paths;
    QString ffmpeg;
    QString convert;
    QString folder;
    std::map<QString, MediaKind> made;
};

} // namespace

TEST_F(MediaFolder, EveryCommonTypeIsListedTypedAndItsPicturesGetPagesAndThumbnails) {
    ASSERT_NO_FATAL_FAILURE(makeAll());
    // Files the studio knows nothing of stay out of the lists.
    test::WriteFile(JoinPath(folder, "notes.txt"), "x");
    test::WriteFile(JoinPath(folder, "photo.jpeg.part"), "x");

    QStringList names;
    for (const auto& [name, kind] : made)
        names << name;
    QStringList listed = ListMediaFiles(folder);
    listed.sort();
    names.sort();
    EXPECT_EQ(listed, names);

    QStringList pictures;
    for (const auto& [name, kind] : made) {
        EXPECT_EQ(GetMediaTypeFromFileSpec(JoinPath(folder, name)), kind) << name.toStdString();
        EXPECT_EQ(HasPicturePageExtension(JoinPath(folder, name)), kind == MediaKind::Pictures)
            << name.toStdString();
        if (kind == MediaKind::Pictures)
            pictures << name;
    }

    // Every picture gets a thumbnail that the window can read, WebP and TIFF too.
    const QString thumbs = JoinPath(paths.gstrSmallPicsDirectory, "Media");
    QDir().mkpath(thumbs);
    const QList<ThumbnailJob> jobs = PlanThumbnails(folder, listed, thumbs);
    EXPECT_EQ(jobs.size(), pictures.size());
    ToolPool pool{2};
    ThumbnailMaker maker(pool, convert, QFileInfo(paths.gstrImageMagickScriptFileSpec).path());
    ASSERT_TRUE(maker.start(jobs));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !maker.isRunning(); }, 120000));
    EXPECT_TRUE(maker.failedPictures().isEmpty()) << maker.failures().value(0).reason.toStdString();
    for (const QString& name : pictures) {
        QImageReader reader(JoinPath(thumbs, name));
        EXPECT_EQ(reader.size(), QSize(134, 100)) << name.toStdString();
        EXPECT_FALSE(reader.read().isNull())
            << name.toStdString() << ": " << reader.errorString().toStdString();
    }
}
