#include "timeline/Project.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "support/CuePrinting.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {
QByteArray wav(int ms) {
    return WavHeader(44100, 1, 16, ms * 882 / 10) + QByteArray(ms * 882 / 10, '\1');
}
} // namespace

TEST(Project, SavedAndOpenedAgainGivesTheSameRecording) {
    QTemporaryDir tmp;
    const QString work = tmp.filePath("ClipquillTempFiles");
    const QString voice = work + "/RecordedAudio.wav";
    test::WriteFile(voice, wav(3500));
    test::WriteFile(work + "/Hello there.jpg", "BM-hello");
    test::WriteFile(tmp.filePath("media/clip.mp4"), "video");
    const QList<TimelineEvent> rows{
        {MediaKind::Video, 250, std::nullopt, tmp.filePath("media/clip.mp4"), {}},
        {MediaKind::Text, 1500, std::nullopt, work + "/Hello there.jpg", "Hello there"},
        {MediaKind::Video, 2750, 1250, tmp.filePath("media/clip.mp4"), {}}};
    const QString project = tmp.filePath("Projects/My 'first' $(take)");
    const ProjectResult saved = SaveProject(project, rows, voice, work);
    ASSERT_TRUE(saved.ok()) << saved.error.toStdString();
    EXPECT_TRUE(saved.missingFiles.isEmpty());
    EXPECT_TRUE(IsProjectFolder(project));
    EXPECT_EQ(ReadFileToBytes(project + "/Hello there.jpg"), "BM-hello");

    // A restart empties the work folder; opening brings everything back.
    QDir(work).removeRecursively();
    const ProjectResult opened = OpenProject(project, voice, work);
    ASSERT_TRUE(opened.ok()) << opened.error.toStdString();
    EXPECT_TRUE(opened.missingFiles.isEmpty());
    EXPECT_EQ(opened.voiceMs, 3500);
    EXPECT_EQ(ReadFileToBytes(voice), wav(3500));
    EXPECT_EQ(opened.rows, rows); // the text picture back in the work folder
    EXPECT_EQ(ReadFileToBytes(work + "/Hello there.jpg"), "BM-hello");

    // Saved again over itself from the opened state: unchanged.
    const ProjectResult again = SaveProject(project, opened.rows, voice, work);
    ASSERT_TRUE(again.ok()) << again.error.toStdString();
    EXPECT_EQ(ReadFileToBytes(project + "/Hello there.jpg"), "BM-hello");
}

TEST(Project, MissingMediaAreListedAndBadTimelinesRejectedWithTheLine) {
    QTemporaryDir tmp;
    const QString project = tmp.filePath("p");
    const QString work = tmp.filePath("work");
    test::WriteFile(project + "/Timeline.txt",
                    "1\tPictures\t0.000\t\t/nowhere/a.jpg\r\n2\tText\t1.000\t\tgone.jpg\tgone\r\n");
    const ProjectResult opened = OpenProject(project, work + "/RecordedAudio.wav", work);
    ASSERT_TRUE(opened.ok());
    EXPECT_EQ(opened.missingFiles, QStringList({project + "/RecordedAudio.wav", "/nowhere/a.jpg",
                                                project + "/gone.jpg"}));
    EXPECT_EQ(opened.rows.size(), 2);

    test::WriteFile(project + "/Timeline.txt",
                    "1\tPictures\t0.000\t\t/a.jpg\r\n2\tPictures\tlater\t\t/b.jpg\r\n");
    const ProjectResult bad = OpenProject(project, work + "/RecordedAudio.wav", work);
    EXPECT_FALSE(bad.ok());
    EXPECT_TRUE(bad.error.contains("line 2:")) << bad.error.toStdString();
    EXPECT_TRUE(
        OpenProject(tmp.filePath("none"), work + "/v.wav", work).error.contains("does not exist"));
}

TEST(Project, SavingNeedsARecordingAndAWritablePlace) {
    QTemporaryDir tmp;
    EXPECT_EQ(SaveProject(tmp.filePath("p"), {}, tmp.filePath("none.wav"), tmp.path()).error,
              "Please record a sound first");
    test::WriteFile(tmp.filePath("v.wav"), wav(100));
    test::WriteFile(tmp.filePath("blocker"), "a file where the folder should go");
    const ProjectResult r =
        SaveProject(tmp.filePath("blocker/p"), {}, tmp.filePath("v.wav"), tmp.path());
    EXPECT_FALSE(r.ok());
    EXPECT_TRUE(r.error.contains("could not be made"));
}

TEST(Project, ItsCaptionsAreSavedAndOpenedWithItAndAnUnreadableCueIsNamed) {
    QTemporaryDir tmp;
    const QString work = tmp.filePath("work");
    const QString voice = work + "/RecordedAudio.wav";
    test::WriteFile(voice, wav(2000));
    const QString project = tmp.filePath("p");
    const CaptionCues cues{{0, 900, "Hi --> there"}, {900, 1800, "Zwei\nZeilen"}};
    ASSERT_TRUE(SaveProject(project, {}, voice, work, cues).ok());
    const ProjectResult opened = OpenProject(project, voice, work);
    EXPECT_EQ(opened.captions.size(), 2);
    EXPECT_EQ(opened.captions[1], cues[1]);
    EXPECT_EQ(opened.captionsProblem, "");

    // Saved again without captions, the old file does not come back with it.
    ASSERT_TRUE(SaveProject(project, {}, voice, work).ok());
    EXPECT_FALSE(QFile::exists(project + "/Captions.srt"));
    EXPECT_TRUE(OpenProject(project, voice, work).captions.isEmpty());

    // A hand-edited file: the good cues are kept, the bad one named.
    test::WriteFile(
        project + "/Captions.srt",
        "1\r\n00:00:00,000 --> 00:00:00,900\r\nKept\r\n\r\n2\r\nsoon --> later\r\nLost\r\n");
    const ProjectResult edited = OpenProject(project, voice, work);
    ASSERT_TRUE(edited.ok());
    EXPECT_EQ(edited.captions, (CaptionCues{{0, 900, "Kept"}}));
    EXPECT_TRUE(edited.captionsProblem.contains("soon --> later"))
        << edited.captionsProblem.toStdString();
}
