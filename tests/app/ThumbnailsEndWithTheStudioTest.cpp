#include "support/LiveProcesses.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

using namespace cq;
using test::Eventually;
using test::ProcessesMentioning;

namespace {

// Files whose name begins with the text, anywhere under the folder.
QStringList FilesUnder(const QString& folder, const QString& begin) {
    QStringList found;
    QDirIterator it(folder, {begin + "*"}, QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        found << it.next();
    return found;
}

// The studio starts making thumbnails of a folder of large pictures at once; it is ended while
// the picture tool holds its temporary copies.
class ThumbnailsEndWithTheStudio : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override {
        pictures = app.file("Big Pictures");
        commonTemp = app.file("common temp");
        QDir().mkpath(pictures);
        QDir().mkpath(commonTemp);
        const QString first = pictures + "/picture 00.jpg";
        ASSERT_TRUE(test::MakeMedia(
            {"-f", "lavfi", "-i", "testsrc=size=8000x6000", "-frames:v", "1", "-q:v", "2", first}));
        for (int i = 1; i < 24; ++i)
            ASSERT_TRUE(QFile::copy(
                first, pictures + QString("/picture %1.jpg").arg(i, 2, 10, QChar('0'))));
        test::WriteFile(app.file("ClipquillSetup.txt"),
                        ("gstrMyPicturesDirectory=" + pictures + "\r\n").toUtf8());
    }

    test::TestAppFolder app;
    QString pictures;
    QString commonTemp;
};

} // namespace

TEST_P(ThumbnailsEndWithTheStudio, NoTemporaryFileOfThePictureToolOutlivesTheStudio) {
    const int signal = GetParam();
    QProcess studio;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", app.home());
    env.insert("XDG_CONFIG_HOME", app.home() + "/.config");
    env.insert("XDG_DATA_HOME", app.home() + "/.local/share");
    // What the tools would use without a folder of their own.
    env.insert("TMPDIR", commonTemp);
    env.insert("MAGICK_TEMPORARY_PATH", commonTemp);
    studio.setProcessEnvironment(env);
    studio.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    studio.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path()});
    ASSERT_TRUE(studio.waitForStarted(10000));
    const qint64 pid = studio.processId();
    const QString workSpace = app.file("SystemMediaGen");
    // The picture tool copies the picture it reads from standard input into a temporary file.
    ASSERT_TRUE(Eventually([&] { return !FilesUnder(workSpace, "magick-").isEmpty(); }, 60000))
        << "no picture tool got under way";

    ASSERT_EQ(::kill(static_cast<pid_t>(pid), signal), 0);
    ASSERT_TRUE(studio.waitForFinished(20000));
    const QByteArray folder = app.path().toUtf8();
    EXPECT_TRUE(Eventually([&] { return ProcessesMentioning(folder, pid).isEmpty(); }, 2000))
        << ProcessesMentioning(folder, pid).size() << " processes left";
    if (signal == SIGKILL) {
        // What a killed studio's guards could not reach goes at the next start.
        QProcess next;
        next.setProcessEnvironment(env);
        next.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path(), "--check"});
        ASSERT_TRUE(next.waitForFinished(60000));
    }
    EXPECT_TRUE(Eventually(
        [&] { return QDir(workSpace).entryList({"cq-run-*"}, QDir::Dirs).isEmpty(); }, 10000))
        << QDir(workSpace).entryList({"cq-run-*"}, QDir::Dirs).join('|').toStdString();
    EXPECT_TRUE(FilesUnder(app.path(), "magick-").isEmpty())
        << FilesUnder(app.path(), "magick-").join('|').toStdString();
    EXPECT_TRUE(FilesUnder(commonTemp, "").isEmpty())
        << FilesUnder(commonTemp, "").join('|').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Signals, ThumbnailsEndWithTheStudio, ::testing::Values(SIGTERM, SIGKILL),
                         [](const ::testing::TestParamInfo<int>& info) {
                             return std::string(info.param == SIGTERM ? "Term" : "Kill");
                         });
