#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "captions/CaptionTableModel.h"
#include "captions/CaptionsFile.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "support/CuePrinting.h"
#include "support/FileSizeLimit.h"
#include "support/TestAppFolder.h"
#include "support/TestAudio.h"
#include "take/Recorder.h"
#include "take/RecordingController.h"
#include "take/TakeFiles.h"
#include "take/TakeKeeper.h"
#include "take/widgets/RecordingPanel.h"
#include "timeline/EventGridModel.h"
#include "timeline/widgets/ProjectPanel.h"

#include "TakeQuestionAnswers.h"

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace cq;
using cq::test::answer;
using cq::test::messageSaying;
using cq::test::questionOpen;
using cq::test::restoredStudio;
using cq::test::takeFilesIn;
using cq::test::workFolderOf;

namespace {

// What a studio that ended mid-take leaves: a voice of one second whose header was never
// finished, a journal with a picture and a text whose picture is in the work folder.
// Returns the work folder.
QString leaveATake(const test::TestAppFolder& app, const QString& picture = "/media/a.jpg") {
    const QString work = workFolderOf(app);
    QDir().mkpath(work);
    WriteWholeFile(WavHeader(8000, 1, 16, 0) + QByteArray(16000, '\1'),
                   work + "/RecordedAudio.wav");
    WriteWholeFile("text picture", work + "/Hello.jpg");
    WriteWholeFile(("1\tPictures\t0.500\t\t" + picture + "\r\n2\tText\t1.000\t\t" + work +
                    "/Hello.jpg\tHello\r\n")
                       .toUtf8(),
                   work + u'/' + QString::fromLatin1(kTakeJournalFileName));
    return work;
}

} // namespace

TEST(UnsavedTake, RecordOpenAndCloseAskFirstAndCancelKeepsEverything) {
    test::TestAppFolder app;
    const QString work = leaveATake(app);
    auto w = restoredStudio(app);
    TimelineStudio& t = w->timeline();
    ASSERT_EQ(t.grid().rowCount(), 2);
    EXPECT_EQ(t.grid().row(1).file, work + "/Hello.jpg");
    EXPECT_EQ(w->timeline().controller().recordingLengthMs(), 1000);

    QTest::mouseClick(t.recordingPanel()->recordButton(), Qt::LeftButton);
    EXPECT_FALSE(w->timeline().controller().gblnRecording());
    ASSERT_TRUE(answer("unsavedTakeQuestion", "Cancel"));
    EXPECT_FALSE(w->timeline().controller().gblnRecording());

    int asked = 0;
    t.projectPanel()->askOpenFolder = [&] {
        ++asked;
        return QString();
    };
    t.projectPanel()->chooseFolderAndOpen();
    ASSERT_TRUE(answer("unsavedTakeQuestion", "Cancel"));
    EXPECT_EQ(asked, 0);

    // Corrections made after the take are kept with it.
    ASSERT_TRUE(t.grid().removeEventRow(0));
    w->close();
    EXPECT_TRUE(w->isVisible());
    ASSERT_TRUE(answer("unsavedTakeQuestion", "Cancel"));
    EXPECT_TRUE(w->isVisible());
    EXPECT_TRUE(t.takeKeeper().isUnsaved());
    EXPECT_EQ(t.grid().rowCount(), 1);

    // Saved on the way out: the window closes and the take leaves the work folder.
    const QString project = app.file("Saved take");
    t.projectPanel()->askSaveFolder = [&] {
        return project;
    };
    w->close();
    ASSERT_TRUE(answer("unsavedTakeQuestion", "Save"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !w->isVisible(); }, 10000));
    EXPECT_EQ(ReadFileToBytes(project + "/Timeline.txt"), "1\tText\t1.000\t\tHello.jpg\tHello\r\n");
    EXPECT_EQ(WavDurationMs(project + "/RecordedAudio.wav"), 1000);
    EXPECT_EQ(takeFilesIn(work), QStringList());
}

// A journal that cannot take the grid's corrections (here a file size limit stands in for a full
// disk) is no reason to keep quiet: a studio ending now would bring the old rows back.
TEST(UnsavedTake, AGridCorrectionTheJournalCannotKeepIsToldToTheUser) {
    test::TestAppFolder app;
    const QString work = leaveATake(app);
    auto w = restoredStudio(app);
    TimelineStudio& t = w->timeline();
    const QString journal = work + u'/' + QString::fromLatin1(kTakeJournalFileName);
    const QByteArray before = ReadFileToBytes(journal);
    QSignalSpy failed(&t.takeKeeper(), &TakeKeeper::journalFailed);

    test::FileSizeLimit limit(10);
    ASSERT_TRUE(limit.isSet());
    const bool removed = t.grid().removeEventRow(0);
    limit.lift();
    ASSERT_TRUE(removed);

    ASSERT_EQ(failed.size(), 1);
    EXPECT_TRUE(failed.first().at(1).toString().contains(journal))
        << failed.first().at(1).toString().toStdString();
    EXPECT_EQ(ReadFileToBytes(journal), before);
    EXPECT_NE(messageSaying(journal), nullptr);

    // Corrected again with room on the disk, the journal takes the rows.
    ASSERT_TRUE(t.grid().removeEventRow(0));
    EXPECT_EQ(failed.size(), 1);
    EXPECT_EQ(ReadFileToBytes(journal), "");
}

TEST(UnsavedTake, DiscardRemovesTheTakeAndAnUnansweredOneOutlivesTheStudio) {
    test::TestAppFolder app;
    const QString work = leaveATake(app);
    {
        // Ended without a word (as by SIGTERM or a crash): the take stays for the next start.
        auto w = test::OpenStudio(app);
        ASSERT_TRUE(QTest::qWaitFor([] { return questionOpen("restoreTakeQuestion"); }, 10000));
    }
    EXPECT_EQ(takeFilesIn(work),
              QStringList({"Hello.jpg", "RecordedAudio.wav", QString(kTakeJournalFileName)}));
    {
        auto w = restoredStudio(app);
        WriteWholeFile("a leftover", work + "/Other.txt");
        w->close();
        ASSERT_TRUE(answer("unsavedTakeQuestion", "Discard"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !w->isVisible(); }, 10000));
        EXPECT_EQ(takeFilesIn(work), QStringList());
    }
    leaveATake(app);
    auto w = test::OpenStudio(app);
    ASSERT_TRUE(answer("restoreTakeQuestion", "Discard"));
    EXPECT_EQ(takeFilesIn(work), QStringList());
    EXPECT_EQ(w->timeline().grid().rowCount(), 0);
    w->close(); // nothing left to ask about
    EXPECT_FALSE(w->isVisible());
    EXPECT_FALSE(questionOpen("unsavedTakeQuestion"));
}

// A click spoilt on the disk costs that click alone, and the user learns how many were lost.
TEST(UnsavedTake, AnUnreadableClickIsLeftOutAndCounted) {
    test::TestAppFolder app;
    const QString work = leaveATake(app);
    QFile journal(work + u'/' + QString::fromLatin1(kTakeJournalFileName));
    ASSERT_TRUE(journal.open(QIODevice::Append));
    const char spoilt[] =
        "3\tPictures\t2.\0\t\t/media/b.jpg\r\n4\tPictures\t3.000\t\t/media/c.jpg\r\n";
    journal.write(spoilt, sizeof spoilt - 1);
    journal.close();

    auto w = restoredStudio(app);
    EXPECT_EQ(w->timeline().grid().rowCount(), 3);
    QMessageBox* told = messageSaying("clicks");
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->text(),
              "1 of the take's clicks could not be read and was left out (line 3: the "
              "line holds zero bytes, so it is not text); 3 came back.");
    told->close();
    w->close();
    ASSERT_TRUE(answer("unsavedTakeQuestion", "Discard"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !w->isVisible(); }, 10000));
}

// The captions belong to the take: back with it, written when edited, saved with the project,
// gone with a discard, cleared by the next recording.
TEST(UnsavedTake, ItsCaptionsComeBackAreKeptWhenEditedAndGoWithIt) {
    test::TestAppFolder app;
    // Every file there, so that opening the project has nothing missing to warn about.
    WriteWholeFile("picture", app.file("a.jpg"));
    const QString work = leaveATake(app, app.file("a.jpg"));
    WriteWholeFile(WriteSrt({{500, 1500, "Helo"}}), work + "/Captions.srt");
    {
        auto w = test::OpenStudio(app);
        ASSERT_TRUE(QTest::qWaitFor([] { return questionOpen("restoreTakeQuestion"); }, 10000));
    }
    EXPECT_TRUE(takeFilesIn(work).contains("Captions.srt"));

    const QString project = app.file("With captions");
    {
        auto w = restoredStudio(app);
        CaptionTableModel& captions = w->timeline().captions();
        ASSERT_EQ(captions.cues(), (CaptionCues{{500, 1500, "Helo"}}));
        EXPECT_TRUE(captions.isEditedByUser()) << "kept cues may hold corrections";
        captions.setData(captions.index(0, CaptionTableModel::Text), "Hello");
        EXPECT_EQ(ReadCaptionsFile(work + "/Captions.srt").cues,
                  (CaptionCues{{500, 1500, "Hello"}}));

        w->timeline().projectPanel()->askSaveFolder = [&] {
            return project;
        };
        w->timeline().projectPanel()->chooseFolderAndSave();
        ASSERT_FALSE(w->timeline().takeKeeper().isUnsaved());
        EXPECT_EQ(ReadCaptionsFile(project + "/Captions.srt").cues, captions.cues());
        // Corrected after the save, the take is worth keeping again.
        captions.addCue(-1);
        EXPECT_TRUE(w->timeline().takeKeeper().isUnsaved());
        w->close();
        ASSERT_TRUE(answer("unsavedTakeQuestion", "Discard"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !w->isVisible(); }, 10000));
        EXPECT_EQ(captions.rowCount(), 0);
        EXPECT_EQ(takeFilesIn(work), QStringList());
    }

    auto w = test::OpenStudio(app);
    CaptionTableModel& captions = w->timeline().captions();
    w->timeline().projectPanel()->askOpenFolder = [&] {
        return project;
    };
    w->timeline().projectPanel()->chooseFolderAndOpen();
    EXPECT_EQ(captions.cues(), (CaptionCues{{500, 1500, "Hello"}}));
    EXPECT_FALSE(w->timeline().takeKeeper().isUnsaved()) << "an opened project is no new take";
    if (!qEnvironmentVariableIsSet("CLIPQUILL_TEST_AUDIO"))
        return;
    QTest::mouseClick(w->timeline().recordingPanel()->recordButton(), Qt::LeftButton);
    ASSERT_TRUE(w->timeline().controller().gblnRecording());
    EXPECT_EQ(captions.rowCount(), 0);
    EXPECT_FALSE(QFile::exists(work + "/Captions.srt"));
    QTest::mouseClick(w->timeline().recordingPanel()->stopButton(), Qt::LeftButton);
}

// A studio goes away in whatever state its take is: before the microphone listens, while it
// listens, mid-take and with a take stopped at the press that started it.
TEST(StudioTeardown, EveryStateOfATakeClosesCleanly) {
    REQUIRE_AUDIO();
    for (int round = 0; round < 24; ++round) {
        SCOPED_TRACE(round);
        test::TestAppFolder app;
        auto w = test::OpenStudio(app);
        TimelineStudio& t = w->timeline();
        if (round % 2 == 1) {
            ASSERT_TRUE(QTest::qWaitFor([&] { return t.recorder().isListening(); }, 10000));
        }
        if (round % 3 != 0) {
            QTest::mouseClick(t.recordingPanel()->recordButton(), Qt::LeftButton);
            ASSERT_TRUE(w->timeline().controller().gblnRecording());
        }
        if (round % 3 == 2)
            QTest::mouseClick(t.recordingPanel()->stopButton(), Qt::LeftButton);
        // Nothing may run while the window is half gone.
        bool loopRan = false;
        QObject context;
        QTimer::singleShot(0, &context, [&] { loopRan = true; });
        w.reset();
        EXPECT_FALSE(loopRan) << "closing the studio ran the event loop";
        ASSERT_TRUE(QTest::qWaitFor([&] { return loopRan; }, 10000));
    }
}
