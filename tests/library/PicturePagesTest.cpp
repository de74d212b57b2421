#include "library/PicturePages.h"
#include "library/FolderListing.h"
#include "library/LastView.h"

#include "support/TestAppFolder.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace cq;

namespace {

// The href values of a page, HTML entities undone, as the viewer hands them to a click.
QStringList Hrefs(const QString& page) {
    QStringList hrefs;
    static const QRegularExpression href(QStringLiteral("<a href=\"([^\"]*)\""));
    for (auto it = href.globalMatch(page); it.hasNext();) {
        QString value = it.next().captured(1);
        value.replace("&quot;", "\"")
            .replace("&lt;", "<")
            .replace("&gt;", ">")
            .replace("&amp;", "&");
        hrefs.append(value);
    }
    return hrefs;
}

} // namespace

TEST(PicturePages, NamesThatNeedEscapingSurviveThePageAndComeBackFromAClick) {
    const QStringList names{
        QStringLiteral("it's \"quoted\" <b>.jpg"), QStringLiteral("fish & chips.jpg"),
        QStringLiteral("100% #1 ?why.jpg"),        QStringLiteral("already %41 encoded.jpg"),
        QString::fromUtf8("zoë vidéo 東京.jpg"),   QStringLiteral("$(touch x) `id`.jpg")};
    const QString folder = QString::fromUtf8("/home/zoë/My Pictures");
    const QString page = BuildThumbnailPage(folder, names, QStringLiteral("/app/SmallPics/P"));

    // Nothing in a name can end an attribute or open a tag.
    EXPECT_FALSE(page.contains(QStringLiteral("\"quoted\"")));
    EXPECT_FALSE(page.contains(QStringLiteral("<b>")));
    EXPECT_FALSE(page.contains(QStringLiteral("fish & chips")));

    const QStringList hrefs = Hrefs(page);
    ASSERT_EQ(hrefs.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        const ThumbnailClick click = DecideThumbnailClick(QUrl(hrefs.at(i)));
        EXPECT_EQ(click.fileSpec, folder + u'/' + names.at(i));
        EXPECT_TRUE(click.showPicture);
        EXPECT_TRUE(click.cancel);
    }
}

TEST(PicturePages, ThumbnailPageLinksEachPictureToItsThumbnailAndAtMostAThousand) {
    QStringList entries;
    for (int i = 0; i < 1500; ++i)
        entries.append(QStringLiteral("p%1.jpg").arg(i));
    entries[3].clear(); // an empty entry gives no anchor
    const QString page = BuildThumbnailPage("/pics/Trip", entries, "/app/SmallPics/Trip");
    const QStringList hrefs = Hrefs(page);
    ASSERT_EQ(hrefs.size(), 999);
    EXPECT_EQ(hrefs.first(), "/pics/Trip/p0.jpg");
    EXPECT_EQ(hrefs.last(), "/pics/Trip/p999.jpg");
    EXPECT_TRUE(page.contains(QStringLiteral("src=\"/app/SmallPics/Trip/p0.jpg\"")));
}

TEST(PicturePages, TheNoteOfPicturesWithoutThumbnailStaysOneShortLine) {
    QList<ThumbnailFailure> failures;
    for (int i = 0; i < 7; ++i)
        failures.append(
            {QStringLiteral("/pics/Trip/p%1 <&>.jpg").arg(i),
             i == 0 ? QString(200, u'x') : QStringLiteral("cache resources exhausted")});
    const QString page =
        BuildThumbnailPage("/pics/Trip", {"a.jpg"}, "/app/SmallPics/Trip", failures);
    // The first five by name, a long reason cut short, names escaped, the rest counted.
    EXPECT_TRUE(
        page.contains("</a><P style=\"color: silver\">No thumbnail for p0 &lt;&amp;&gt;.jpg (" +
                      QString(87, u'x') +
                      "...); p1 &lt;&amp;&gt;.jpg (cache resources "
                      "exhausted); p2"))
        << page.toStdString();
    EXPECT_TRUE(page.endsWith(
        "; p4 &lt;&amp;&gt;.jpg (cache resources exhausted) and 2 more.</P></BODY></HTML>"))
        << page.toStdString();
    EXPECT_FALSE(page.contains("p5"));
    // No failures: the page is exactly the anchors.
    EXPECT_FALSE(BuildThumbnailPage("/pics/Trip", {"a.jpg"}, "/app/SmallPics/Trip").contains("<P"));
}

TEST(PicturePages, AltTextKeepsOnlyAsciiLettersOfTheNameWithoutItsExtension) {
    EXPECT_EQ(ThumbnailAltText(QStringLiteral("My Photo 2.jpg")), "MyPhoto");
    EXPECT_EQ(ThumbnailAltText(QString::fromUtf8("Zoë_[x].jpeg")), "Zox");
    EXPECT_EQ(ThumbnailAltText(QStringLiteral("a.b")), "");
}

TEST(PicturePages, ThumbnailFolderIsTheLastComponentUnderTheRoot) {
    EXPECT_EQ(ThumbnailFolderFor("/app/SmallPics", "/a/Trip"), "/app/SmallPics/Trip");
    EXPECT_EQ(ThumbnailFolderFor("/app/SmallPics", "/b/c/Trip/"), "/app/SmallPics/Trip");
    EXPECT_EQ(ThumbnailFolderFor("/app/SmallPics", "D:\\Photos\\Holiday"),
              "/app/SmallPics/Holiday");
    EXPECT_EQ(ThumbnailFolderFor("/app/SmallPics", "/"), "/app/SmallPics");
}

TEST(PicturePages, FittingFillsTheWidthLessAMarginAndKeepsProportions) {
    const PictureFit tall = FitPictureToViewer(6000, 15.0, 400, 1600);
    EXPECT_EQ(tall.width, 333);
    EXPECT_EQ(tall.height, 1332);
    const PictureFit wide = FitPictureToViewer(1000 + 15 * 640, 15.0, 1920, 1080);
    EXPECT_EQ(wide.width, 640);
    EXPECT_EQ(wide.height, 360);
    const PictureFit none = FitPictureToViewer(6000, 15.0, 0, 0);
    EXPECT_EQ(none.width, 0);
    EXPECT_EQ(none.height, 0);
}

TEST(PicturePages, PicturePageCarriesTheSizeAsStyleAndAttributes) {
    const QString page = BuildPicturePage("/p/a&b.jpg", {333, 1332});
    EXPECT_TRUE(page.contains("src=\"/p/a&amp;b.jpg\"")) << page.toStdString();
    EXPECT_TRUE(page.contains("WIDTH=\"333\" HEIGHT=\"1332\"")) << page.toStdString();
    EXPECT_TRUE(HasPicturePageExtension("scan.TIF"));
    EXPECT_TRUE(HasPicturePageExtension("x.Png"));
    EXPECT_TRUE(HasPicturePageExtension("scan.tiff"));
    EXPECT_TRUE(HasPicturePageExtension("shot.jpeg"));
    EXPECT_FALSE(HasPicturePageExtension("clip.mp4"));
    EXPECT_FALSE(HasPicturePageExtension("x.jpg.txt"));
}

TEST(PicturePages, ThumbnailClicksOnOtherMediaNavigateAndOnlyNonAudioIsLogged) {
    const ThumbnailClick song = DecideThumbnailClick(QUrl("/m/song.mp3"));
    EXPECT_FALSE(song.cancel);
    EXPECT_FALSE(song.log);
    const ThumbnailClick clip = DecideThumbnailClick(QUrl("/m/clip.avi"));
    EXPECT_FALSE(clip.cancel);
    EXPECT_TRUE(clip.log);
    EXPECT_EQ(clip.mediaType, MediaKind::Video);
    for (const char* own : {"", "res://ieframe.dll/x", "http:///", "/m/tune.mid"}) {
        const ThumbnailClick click = DecideThumbnailClick(QUrl(own));
        EXPECT_FALSE(click.cancel || click.log || click.showPicture) << own;
    }
}

TEST(LastView, TheLastRowOfAnotherKindDecides) {
    using enum MediaKind;
    EXPECT_EQ(RevertToLastView({Video, Pictures, Text}), DisplaySurface::Picture);
    EXPECT_EQ(RevertToLastView({Pictures, Video, Text, Text}), DisplaySurface::Video);
    EXPECT_EQ(RevertToLastView({Text, Video, Pictures}), DisplaySurface::Video);
    EXPECT_EQ(RevertToLastView({Video, Text, Pictures, Pictures}), DisplaySurface::Text);
    EXPECT_EQ(RevertToLastView({Text, Pictures, Video}), DisplaySurface::Picture);
    EXPECT_EQ(RevertToLastView({Pictures, Text, Both}), DisplaySurface::Text);
    // After a row that is no surface's own, a video before it is not gone back to.
    EXPECT_EQ(RevertToLastView({Pictures, Video, Untyped}), DisplaySurface::Picture);
    // Nothing to go back to: the video surface.
    EXPECT_EQ(RevertToLastView({Text, Text}), DisplaySurface::Video);
    EXPECT_EQ(RevertToLastView({}), DisplaySurface::Video);
}

TEST(FolderListing, PatternMatchesWithoutRegardToCaseAndSkipsOtherFiles) {
    QTemporaryDir dir;
    for (const char* name : {"HOLIDAY.JPG", "song.Mid", "clip.MpEg", "notes.txt", "shot.png",
                             "x.tiff", "archive.tar.mp3"})
        test::WriteFile(dir.filePath(name), "x");
    test::WriteFile(dir.filePath("Sub.jpg/inner.jpg"), "x"); // a folder is not a file
    EXPECT_EQ(ListMediaFiles(dir.path()),
              (QStringList{"archive.tar.mp3", "clip.MpEg", "HOLIDAY.JPG", "shot.png", "song.Mid",
                           "x.tiff"}));
    EXPECT_EQ(ListSubfolders(dir.path()), QStringList{"Sub.jpg"});
    EXPECT_FALSE(IsReadableFolder(dir.filePath("gone")));
    EXPECT_FALSE(IsReadableFolder(dir.filePath("notes.txt")));
    EXPECT_EQ(ParentFolder(dir.filePath("Sub.jpg")), dir.path());
}

TEST(FolderListing, ListsOnlyRegularFilesAfterFollowingLinks) {
    QTemporaryDir dir;
    test::WriteFile(dir.filePath("real.jpg"), "x");
    QDir().mkpath(dir.filePath("folder"));
    ASSERT_TRUE(QFile::link(dir.filePath("real.jpg"), dir.filePath("link to real.jpg")));
    ASSERT_TRUE(QFile::link("/dev/zero", dir.filePath("zero.jpg")));
    ASSERT_TRUE(QFile::link(dir.filePath("folder"), dir.filePath("folder link.jpg")));
    ASSERT_TRUE(QFile::link(dir.filePath("gone.jpg"), dir.filePath("dangling.jpg")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.filePath("fifo.png")).constData(), 0644), 0);
    ASSERT_TRUE(QFile::link(dir.filePath("fifo.png"), dir.filePath("fifo link.png")));
    // A socket, as a program of the user might leave one.
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray socketPath = QFile::encodeName(dir.filePath("socket.bmp"));
    ASSERT_LT(socketPath.size(), qsizetype(sizeof(address.sun_path)));
    std::memcpy(address.sun_path, socketPath.constData(), socketPath.size());
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ::close(fd);
    ASSERT_TRUE(QFile::link(dir.filePath("socket.bmp"), dir.filePath("socket link.bmp")));

    EXPECT_EQ(ListMediaFiles(dir.path()), (QStringList{"link to real.jpg", "real.jpg"}));
    EXPECT_EQ(ListRegularFiles(dir.path(), {"*"}), (QStringList{"link to real.jpg", "real.jpg"}));
}
