#include "ProjectVersions.h"
#include "platform/TextFiles.h"
#include "timeline/Project.h"
#include "timeline/ProjectFolderSwap.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include "support/FileSizeLimit.h"

#include <gtest/gtest.h>

// Failed comparisons show the text, not its bytes.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

using namespace cq;

namespace {

// A project of the first version, in a folder that also holds files of the user's own.
struct SavedProject {
    QTemporaryDir tmp;
    QString project = tmp.filePath("My project");
    QString media = tmp.filePath("media/clip.mp4");
    QString work = tmp.filePath("work");

    SavedProject() {
        QDir().mkpath(QFileInfo(media).absolutePath());
        WriteWholeFile("video", media);
        const QList<TimelineEvent> rows = test::PrepareVersion(1, work, media);
        EXPECT_TRUE(
            SaveProject(project, rows, work + "/RecordedAudio.wav", work, test::VersionCaptions(1))
                .ok());
        QDir().mkpath(project + "/notes/deep");
        WriteWholeFile("my notes", project + "/notes/deep/todo.txt");
        WriteWholeFile("my script", project + "/script.txt");
        QFile::link("script.txt", project + "/script link");
    }

    // Which version the project opens as, checking that all of it is of that one: -1 for a mix.
    int openedVersion(const QString& folder) {
        const QString openWork = tmp.filePath("open");
        const ProjectResult opened = OpenProject(folder, openWork + "/RecordedAudio.wav", openWork);
        EXPECT_TRUE(opened.ok()) << opened.error.toStdString();
        const int version = opened.voiceMs == 1000 ? 1 : opened.voiceMs == 2000 ? 2 : -1;
        const bool rowsMatch =
            opened.rows.size() == version + 1 && opened.missingFiles.isEmpty() &&
            opened.rows[0].text == QString("Version %1").arg(version) &&
            ReadFileToBytes(opened.rows[0].file) == test::VersionPicture(version);
        const bool captionsMatch = opened.captions == test::VersionCaptions(version);
        EXPECT_TRUE(rowsMatch && captionsMatch)
            << "a mix of versions in " << folder.toStdString() << ": voice " << opened.voiceMs
            << " ms, " << opened.rows.size() << " rows, missing "
            << opened.missingFiles.join(", ").toStdString() << ", " << opened.captions.size()
            << " captions";
        return rowsMatch && captionsMatch ? version : -1;
    }

    void expectUserFilesKept() {
        EXPECT_EQ(ReadFileToBytes(project + "/notes/deep/todo.txt"), "my notes");
        EXPECT_EQ(ReadFileToBytes(project + "/script.txt"), "my script");
        EXPECT_EQ(QFile::symLinkTarget(project + "/script link"), project + "/script.txt");
    }

    QStringList leftovers() const {
        return QDir(tmp.path()).entryList({"*.saving", "*.replaced"}, QDir::AllEntries);
    }

    ProjectResult saveSecondVersion() {
        const QList<TimelineEvent> rows = test::PrepareVersion(2, work, media);
        return SaveProject(project, rows, work + "/RecordedAudio.wav", work,
                           test::VersionCaptions(2));
    }
};

} // namespace

TEST(ProjectSave, ReplacesTheFolderWholeKeepingTheUsersFilesWithOrWithoutAnExchange) {
    for (const bool refuseExchange : {false, true}) {
        SCOPED_TRACE(refuseExchange ? "two renames" : "exchange");
        SavedProject saved;
        ProjectSaveSeamsForTests().refuseExchange = refuseExchange;
        const ProjectResult result = saved.saveSecondVersion();
        ProjectSaveSeamsForTests().refuseExchange = false;
        ASSERT_TRUE(result.ok()) << result.error.toStdString();
        EXPECT_EQ(result.notice, "");
        EXPECT_EQ(result.rows[0].file, saved.project + "/Two.jpg");
        EXPECT_EQ(saved.openedVersion(saved.project), 2);
        saved.expectUserFilesKept();
        // The first version's picture was the studio's: it goes with the version.
        EXPECT_FALSE(QFile::exists(saved.project + "/One.jpg"));
        EXPECT_EQ(saved.leftovers(), QStringList());
    }
}

TEST(ProjectSave, AFailedWriteLeavesTheOldProjectAndNothingBesideIt) {
    SavedProject saved;
    // The new voice fits on the disk, the new text picture no longer does.
    const QList<TimelineEvent> rows = test::PrepareVersion(2, saved.work, saved.media);
    WriteWholeFile(QByteArray(200000, 'p'), rows[0].file);
    test::FileSizeLimit limit(static_cast<rlim_t>(test::VersionVoice(2).size() + 10));
    ASSERT_TRUE(limit.isSet());
    const ProjectResult result = SaveProject(saved.project, rows, saved.work + "/RecordedAudio.wav",
                                             saved.work, test::VersionCaptions(2));
    limit.lift();
    EXPECT_FALSE(result.ok());
    EXPECT_TRUE(result.error.contains("Two.jpg")) << result.error.toStdString();
    EXPECT_EQ(saved.openedVersion(saved.project), 1);
    saved.expectUserFilesKept();
    EXPECT_EQ(saved.leftovers(), QStringList());
}

// A save killed at every step leaves the old project or the new one, each whole; the folder
// left beside it is refused by Open Project and cleared by the next save, which loses nothing.
TEST(ProjectSave, KilledAtAnyStepLeavesTheOldProjectOrTheNewOneWhole) {
    struct Case {
        const char* step;
        bool refuseExchange;
        int expected;
    };
    const Case cases[] = {{"copied", false, 1},     {"carried", false, 1}, {"synced", false, 1},
                          {"swapped", false, 2},    {"cleaned", false, 2}, {"synced", true, 1},
                          {"moved aside", true, 1}, {"swapped", true, 2}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.step) + (c.refuseExchange ? " (two renames)" : ""));
        SavedProject saved;
        QProcess child;
        QStringList args{"save", saved.project, saved.work, saved.media, "2", c.step};
        if (c.refuseExchange)
            args << "no-exchange";
        child.start(CQ_SAVE_HELPER, args);
        ASSERT_TRUE(child.waitForFinished(60000));
        ASSERT_EQ(child.exitStatus(), QProcess::CrashExit) << child.readAllStandardError().data();

        const QStringList left = saved.leftovers();
        for (const QString& name : left)
            EXPECT_TRUE(OpenProject(saved.tmp.filePath(name), saved.tmp.filePath("o/v.wav"),
                                    saved.tmp.filePath("o"))
                            .error.contains("Open \"" + saved.project + "\" instead"));
        EXPECT_EQ(saved.openedVersion(saved.project), c.expected);
        saved.expectUserFilesKept();

        const ProjectResult again = saved.saveSecondVersion();
        ASSERT_TRUE(again.ok()) << again.error.toStdString();
        EXPECT_EQ(again.notice.isEmpty(), left.isEmpty()) << again.notice.toStdString();
        EXPECT_EQ(saved.openedVersion(saved.project), 2);
        saved.expectUserFilesKept();
        EXPECT_EQ(saved.leftovers(), QStringList());
    }
}

TEST(ProjectSave, ALeftoverHoldingSomethingElseIsKeptAndNamed) {
    SavedProject saved;
    const QString saving = SavingFolderOf(saved.project);
    QDir().mkpath(saving);
    WriteWholeFile("only here", saving + "/mine.txt");
    const ProjectResult result = saved.saveSecondVersion();
    EXPECT_FALSE(result.ok());
    EXPECT_TRUE(result.error.contains(saving)) << result.error.toStdString();
    EXPECT_EQ(ReadFileToBytes(saving + "/mine.txt"), "only here");
    EXPECT_EQ(saved.openedVersion(saved.project), 1);
}
