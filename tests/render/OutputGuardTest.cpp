#include "render/OutputGuard.h"
#include "captions/SubtitleFiles.h"
#include "platform/TextFiles.h"
#include "render/CaptionFilesBeside.h"
#include "support/TestAppFolder.h"
#include "support/TestRows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace cq;

namespace {

// A project folder with a video item, its voice and timeline, and a link that leads to it.
class OutputGuard : public ::testing::Test {
protected:
    OutputGuard() {
        QDir().mkpath(file("project"));
        for (const char* name : {"project/clip.avi", "project/RecordedAudio.wav",
                                 "project/Timeline.txt", "project/Hi.jpg"})
            EXPECT_TRUE(WriteWholeFile(name, file(name)));
        EXPECT_TRUE(QFile::link(file("project"), file("link")));
        in.rows = {test::Event(MediaKind::Video, 0, file("link/clip.avi")),
                   test::Event(MediaKind::Text, 1000, file("project/Hi.jpg"))};
        in.voiceFile = file("project/RecordedAudio.wav");
        in.sourceFiles = {file("project/Timeline.txt")};
        in.writtenFilesRecord = file("record.txt");
    }

    QString file(const QString& relative) const { return dir.filePath(relative); }

    QString problemFor(const QString& output) {
        in.output = output;
        return RenderOutputProblem(in);
    }

    QTemporaryDir dir;
    RenderInputs in;
};

CaptionCues someCues() {
    return {{0, 900, "Hello"}};
}

// Writes a pair the way a render does: staged under the partial name, then moved into place.
QString publishPair(const QString& output, const QString& record) {
    CaptionFilesBeside pair(output, output + ".part", record);
    const QString staged = pair.stage(someCues());
    return staged.isEmpty() ? pair.publish() : staged;
}

} // namespace

TEST_F(OutputGuard, TheResultNeverLandsOnAFileTheRenderReadsWhicheverLinkNamesIt) {
    for (const char* input : {"project/clip.avi", "link/clip.avi", "link/Hi.jpg",
                              "link/RecordedAudio.wav", "link/Timeline.txt"}) {
        const QString problem = problemFor(file(input));
        EXPECT_TRUE(problem.contains("which the render reads"))
            << input << ": " << problem.toStdString();
    }
    // A link named like the result is replaced itself, not what it leads to.
    ASSERT_TRUE(QFile::link(file("project/clip.avi"), file("alias.avi")));
    EXPECT_EQ(problemFor(file("alias.avi")), QString());
    in.rows[0].file = file("alias.avi");
    EXPECT_FALSE(problemFor(file("alias.avi")).isEmpty());

    EXPECT_EQ(problemFor(file("project/Result.avi")), QString());
    EXPECT_EQ(problemFor(file("new/deeper/Result.avi")), QString()) << "made when rendering";
}

TEST_F(OutputGuard, AProtectedFileOrAnUnwritableFolderIsRefusedNamingTheResult) {
    const QString kept = file("kept.avi");
    ASSERT_TRUE(WriteWholeFile("mine", kept));
    ASSERT_EQ(::chmod(QFile::encodeName(kept).constData(), 0444), 0);
    EXPECT_TRUE(problemFor(kept).contains("\"" + kept + "\" is write-protected"))
        << problemFor(kept).toStdString();
    ASSERT_EQ(::chmod(QFile::encodeName(kept).constData(), 0644), 0);
    EXPECT_EQ(problemFor(kept), QString());

    QDir().mkpath(file("folder.avi"));
    EXPECT_TRUE(problemFor(file("folder.avi")).contains("is a folder"));

    // Not even root may make files in /proc.
    const QString nowhere = "/proc/clipquill-none/Result.avi";
    EXPECT_TRUE(problemFor(nowhere).startsWith("The result \"" + nowhere + "\" cannot be written"))
        << problemFor(nowhere).toStdString();
    EXPECT_TRUE(problemFor(file("kept.avi/Result.avi")).contains("is not a folder"));
    if (::geteuid() != 0) {
        QDir().mkpath(file("shut"));
        ::chmod(QFile::encodeName(file("shut")).constData(), 0555);
        EXPECT_FALSE(problemFor(file("shut/Result.avi")).isEmpty());
        ::chmod(QFile::encodeName(file("shut")).constData(), 0755);
    }
}

// The pair beside a result is the studio's to replace or remove only as the studio wrote it.
TEST_F(OutputGuard, OnlySubtitlesTheStudioWroteAreReplacedOrRemoved) {
    const QString output = file("out/b.avi");
    QDir().mkpath(file("out"));
    ASSERT_EQ(publishPair(output, in.writtenFilesRecord), QString());
    EXPECT_EQ(ReadFileToBytes(file("out/b.srt")), WriteSrt(someCues()));
    in.writeCaptions = true;
    EXPECT_EQ(problemFor(output), QString()) << "its own pair is replaced";
    // Removed without captions; the record forgets them.
    EXPECT_EQ(CaptionFilesBeside(output, {}, in.writtenFilesRecord).publish(), QString());
    EXPECT_FALSE(QFileInfo::exists(file("out/b.srt")) || QFileInfo::exists(file("out/b.vtt")));

    // The user's own pair, and a pair of the studio's edited since, stay and are named.
    ASSERT_TRUE(WriteWholeFile("1\n00:00:00,000 --> 00:00:01,000\nmine\n", file("out/b.srt")));
    ASSERT_EQ(publishPair(file("out/c.avi"), in.writtenFilesRecord), QString());
    ASSERT_TRUE(WriteWholeFile("WEBVTT\n\nedited", file("out/c.vtt")));
    for (const char* name : {"out/b.avi", "out/c.avi"}) {
        const QString left = CaptionFilesBeside(file(name), {}, in.writtenFilesRecord).publish();
        EXPECT_TRUE(left.contains("was not written by the studio")) << left.toStdString();
        EXPECT_TRUE(problemFor(file(name)).contains("already stands beside the result")) << name;
    }
    EXPECT_EQ(ReadFileToBytes(file("out/b.srt")), "1\n00:00:00,000 --> 00:00:01,000\nmine\n");
    EXPECT_EQ(ReadFileToBytes(file("out/c.vtt")), "WEBVTT\n\nedited");
    EXPECT_FALSE(QFileInfo::exists(file("out/c.srt"))) << "its unchanged half was the studio's";
    in.writeCaptions = false;
    EXPECT_EQ(problemFor(output), QString()) << "without captions they are simply left";
}

TEST_F(OutputGuard, TheRecordKnowsAFileByWhereItLandsAndSurvivesGarbage) {
    QDir().mkpath(file("out"));
    ASSERT_TRUE(QFile::link(file("out"), file("outlink")));
    ASSERT_EQ(publishPair(file("outlink/b.avi"), in.writtenFilesRecord), QString());
    const WrittenFiles written(in.writtenFilesRecord);
    EXPECT_TRUE(written.wroteAsItIs(file("out/b.srt")));
    EXPECT_FALSE(written.wroteAsItIs(file("project/Hi.jpg")));

    QByteArray record = ReadFileToBytes(in.writtenFilesRecord);
    record.prepend("not a line\n\t\n" + QByteArray(64, 'z') + "\t/x\n");
    ASSERT_TRUE(WriteWholeFile(record, in.writtenFilesRecord));
    EXPECT_TRUE(WrittenFiles(in.writtenFilesRecord).wroteAsItIs(file("out/b.vtt")));
    EXPECT_FALSE(WrittenFiles({}).wroteAsItIs(file("out/b.vtt"))) << "no record, nothing known";
}
