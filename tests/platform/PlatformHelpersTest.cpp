#include "platform/Folders.h"
#include "platform/Job.h"
#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"
#include "platform/WavFormat.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include "support/FileSizeLimit.h"

#include <gtest/gtest.h>

using namespace cq;

namespace {

// A job whose work the test does by hand.
class HandJob : public Job {
public:
    bool isRunning() const override { return m_running; }
    void cancel() override { finish(JobEnd::cancelled()); }
    void start(bool refuse) {
        m_running = true;
        restartProgress();
        if (refuse)
            finish(JobEnd::failed(QStringLiteral("refused")));
    }
    void step(int percent) { setProgress(percent); }

private:
    void finish(const JobEnd& how) {
        m_running = false;
        end(how);
    }
    bool m_running = false;
};

} // namespace

// A job may end inside its own start; the caller that waits for its end must not wait for good.
TEST(Job, RunToEndReturnsAlsoForAnEndInsideStartAndProgressIsToldOncePerChange) {
    HandJob job;
    QList<int> told;
    QObject::connect(&job, &Job::progressed, [&](int percent) { told << percent; });
    EXPECT_EQ(RunToEnd(job, [&] { job.start(true); }).message, "refused");
    const JobEnd end = RunToEnd(job, [&] {
        job.start(false);
        QTimer::singleShot(0, &job, [&] {
            for (int percent : {30, 30, 250})
                job.step(percent);
            job.cancel();
        });
    });
    EXPECT_TRUE(end.isCancelled());
    EXPECT_EQ(told, QList<int>({0, 0, 30, 100}));
}

TEST(TextHelpers, FiltersKeepOnlyWhatTheyName) {
    EXPECT_EQ(CleanFileName("Doh! It's (5) a_b-c+d?.jpg"), "Doh Its (5) a_b-c+djpg");
    EXPECT_EQ(GetDigitsOnly("(555) 123-4567"), "5551234567");
    EXPECT_EQ(CleanFileName(QString::fromUtf8("Zoë")), "Zo");
}

TEST(TextHelpers, PathPieces) {
    EXPECT_EQ(SplitToArrayNonEmpty("a,,b", ","), QStringList({"a", "b"}));
    EXPECT_EQ(RemoveLineBreaks("a\r\nb\r\r\n\nc"), "abc");
}

TEST(TextHelpers, InvertCharactersFlipsBytesAndIsItsOwnInverse) {
    EXPECT_EQ(InvertCharacters("\r\n"), QByteArray("\xf2\xf5"));
    EXPECT_EQ(InvertCharacters("A"), QByteArray("\xbe"));
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(static_cast<char>(i));
    EXPECT_EQ(InvertCharacters(InvertCharacters(all)), all);
}

TEST(TextFiles, WholeFilesEndWithOneCrLfAndBlankPathsWriteNothing) {
    QTemporaryDir dir;
    const QString file = dir.filePath("a.txt");
    ASSERT_TRUE(SaveTextToFile("line one\r\nline two", file));
    ASSERT_TRUE(SaveTextToFile("short", file));
    EXPECT_EQ(ReadFileToBytes(file), "short\r\n");
    EXPECT_FALSE(SaveTextToFile("x", "   "));
    EXPECT_EQ(ReadFileToString(""), "");
    EXPECT_FALSE(SaveTextToFile("x", dir.filePath("no/such/folder/a.txt")));
}

// A disk that takes only part of the text (a file size limit stands in for a full one) fails the
// write, and the file keeps what it held.
TEST(TextFiles, AWriteTheDiskCutsShortFailsAndKeepsTheOldFile) {
    QTemporaryDir dir;
    const QString file = dir.filePath("a.txt");
    ASSERT_TRUE(WriteWholeFile("old", file));
    test::FileSizeLimit limit(10);
    ASSERT_TRUE(limit.isSet());
    const bool written = WriteWholeFile(QByteArray(40, 'n'), file);
    limit.lift();
    EXPECT_FALSE(written);
    EXPECT_EQ(ReadFileToBytes(file), "old");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"a.txt"});
}

TEST(Folders, MakeFolderPathCreatesEveryMissingLevel) {
    QTemporaryDir dir;
    QDir().mkpath(dir.filePath("A"));
    EXPECT_TRUE(MakeFolderPath("  " + dir.filePath("A/B/C") + " "));
    EXPECT_TRUE(QFileInfo(dir.filePath("A/B/C")).isDir());
    QFile f(dir.filePath("A/file"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    EXPECT_FALSE(MakeFolderPath(dir.filePath("A/file/D")));
    QDir().mkpath(dir.filePath("A/sub"));
    EXPECT_EQ(DeleteFilesInFolder(dir.filePath("A")), 0);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("A/file")));
    EXPECT_TRUE(QFileInfo(dir.filePath("A/sub")).isDir());
}

TEST(WavFormat, CanonicalHeaderOfMonoSixteenBit) {
    const QByteArray h = WavHeader(44100, 1, 16, 88200);
    ASSERT_EQ(h.size(), 44);
    EXPECT_EQ(h.left(4), "RIFF");
    EXPECT_EQ(h.mid(8, 8), "WAVEfmt ");
    EXPECT_EQ(h.mid(36, 4), "data");
    auto u32 = [&](int at) {
        return quint32(quint8(h[at])) | quint32(quint8(h[at + 1])) << 8 |
               quint32(quint8(h[at + 2])) << 16 | quint32(quint8(h[at + 3])) << 24;
    };
    EXPECT_EQ(u32(4), 36u + 88200u);
    EXPECT_EQ(u32(24), 44100u);
    EXPECT_EQ(u32(28), 88200u);
    EXPECT_EQ(u32(40), 88200u);
}
