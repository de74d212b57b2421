#include "app/widgets/frmClipquill.h"
#include "captions/CaptionTableModel.h"
#include "captions/CaptionsFile.h"
#include "platform/TerminationSignals.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "support/CuePrinting.h"
#include "support/FileSizeLimit.h"
#include "support/LiveProcesses.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "take/StudioFolderLock.h"
#include "take/TakeFiles.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/Recorder.h"
#include "timeline/TakeKeeper.h"
#include "timeline/widgets/ProjectPanel.h"
#include "timeline/widgets/RecordingPanel.h"
#include "timeline/widgets/TimelineStudio.h"

#include "../app/StudioProcess.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>

using namespace cq;

namespace {

QString workFolderOf(const test::TestAppFolder& app) {
    return AppPaths::forFolder(app.path()).gstrTempFilesDirectory;
}

// Answers the open question box of that name with the button of that name.
bool answer(const char* box, const char* button) {
    QMessageBox* question = nullptr;
    if (!QTest::qWaitFor(
            [&] {
                for (QWidget* w : QApplication::topLevelWidgets())
                    if (w->objectName() == box && w->isVisible())
                        question = qobject_cast<QMessageBox*>(w);
                return question != nullptr;
            },
            10000))
        return false;
    auto* pressed = question->findChild<QPushButton*>(button);
    if (!pressed)
        return false;
    pressed->click();
    return QTest::qWaitFor([&] { return !question || !question->isVisible(); }, 10000);
}

bool questionOpen(const char* box) {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == box && w->isVisible())
            return true;
    return false;
}

// What a studio that ended mid-take leaves: a voice of one second whose header was never
// finished, a journal with a picture and a text whose picture is in the work folder.
void leaveATake(const QString& work, const QString& picture) {
    QDir().mkpath(work);
    WriteWholeFile(WavHeader(8000, 1, 16, 0) + QByteArray(16000, '\1'),
                   work + "/RecordedAudio.wav");
    WriteWholeFile("text picture", work + "/Hello.jpg");
    WriteWholeFile(("1\tPictures\t0.500\t\t" + picture + "\r\n2\tText\t1.000\t\t" + work +
                    "/Hello.jpg\tHello\r\n")
                       .toUtf8(),
                   work + u'/' + QString::fromLatin1(kTakeJournalFileName));
}

QStringList takeFilesIn(const QString& work) {
    return QDir(work).entryList(QDir::Files, QDir::Name);
}

std::unique_ptr<frmClipquill> restoredStudio(const test::TestAppFolder& app) {
    auto w = test::OpenStudio(app);
    EXPECT_TRUE(answer("restoreTakeQuestion", "Restore"));
    return w;
}

} // namespace

TEST(UnsavedTake, RecordOpenAndCloseAskFirstAndCancelKeepsEverything) {
    test::TestAppFolder app;
    const QString work = workFolderOf(app);
    leaveATake(work, "/media/a.jpg");
    auto w = restoredStudio(app);
    TimelineStudio& t = w->timeline();
    ASSERT_EQ(t.grid().rowCount(), 2);
    EXPECT_EQ(t.grid().row(1).file, work + "/Hello.jpg");
    EXPECT_EQ(w->recordingState().recordingLengthMs, 1000);

    QTest::mouseClick(t.recordingPanel()->recordButton(), Qt::LeftButton);
    EXPECT_FALSE(w->recordingState().gblnRecording);
    ASSERT_TRUE(answer("unsavedTakeQuestion", "Cancel"));
    EXPECT_FALSE(w->recordingState().gblnRecording);

    int asked = 0;
    t.projectPanel()->askOpenFolder = [&] {
        ++asked;
        return QString();
    };
    t.projectPanel()->cmdOpenProject_Click();
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
    const QString work = workFolderOf(app);
    leaveATake(work, "/media/a.jpg");
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
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            for (QWidget* box : QApplication::topLevelWidgets())
                if (auto* m = qobject_cast<QMessageBox*>(box);
                    m && m->isVisible() && m->text().contains(journal))
                    return true;
            return false;
        },
        10000));

    // Corrected again with room on the disk, the journal takes the rows.
    ASSERT_TRUE(t.grid().removeEventRow(0));
    EXPECT_EQ(failed.size(), 1);
    EXPECT_EQ(ReadFileToBytes(journal), "");
}

TEST(UnsavedTake, DiscardRemovesTheTakeAndAnUnansweredOneOutlivesTheStudio) {
    test::TestAppFolder app;
    const QString work = workFolderOf(app);
    leaveATake(work, "/media/a.jpg");
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
    leaveATake(work, "/media/a.jpg");
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
    const QString work = workFolderOf(app);
    leaveATake(work, "/media/a.jpg");
    QFile journal(work + u'/' + QString::fromLatin1(kTakeJournalFileName));
    ASSERT_TRUE(journal.open(QIODevice::Append));
    const char spoilt[] =
        "3\tPictures\t2.\0\t\t/media/b.jpg\r\n4\tPictures\t3.000\t\t/media/c.jpg\r\n";
    journal.write(spoilt, sizeof spoilt - 1);
    journal.close();

    auto w = restoredStudio(app);
    EXPECT_EQ(w->timeline().grid().rowCount(), 3);
    QMessageBox* told = nullptr;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            for (QWidget* top : QApplication::topLevelWidgets())
                if (auto* box = qobject_cast<QMessageBox*>(top);
                    box && box->isVisible() && box->text().contains("clicks"))
                    told = box;
            return told != nullptr;
        },
        10000));
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
    const QString work = workFolderOf(app);
    // Every file there, so that opening the project has nothing missing to warn about.
    WriteWholeFile("picture", app.file("a.jpg"));
    leaveATake(work, app.file("a.jpg"));
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
        w->timeline().projectPanel()->cmdSaveProject_Click();
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
    w->timeline().projectPanel()->cmdOpenProject_Click();
    EXPECT_EQ(captions.cues(), (CaptionCues{{500, 1500, "Hello"}}));
    EXPECT_FALSE(w->timeline().takeKeeper().isUnsaved()) << "an opened project is no new take";
    if (!qEnvironmentVariableIsSet("CLIPQUILL_TEST_AUDIO"))
        return;
    QTest::mouseClick(w->timeline().recordingPanel()->recordButton(), Qt::LeftButton);
    ASSERT_TRUE(w->recordingState().gblnRecording);
    EXPECT_EQ(captions.rowCount(), 0);
    EXPECT_FALSE(QFile::exists(work + "/Captions.srt"));
    QTest::mouseClick(w->timeline().recordingPanel()->stopButton(), Qt::LeftButton);
}

// A studio goes away in whatever state its take is: before the microphone listens, while it
// listens, mid-take and with a take stopped at the press that started it.
TEST(StudioTeardown, EveryStateOfATakeClosesCleanly) {
    if (!qEnvironmentVariableIsSet("CLIPQUILL_TEST_AUDIO"))
        GTEST_SKIP() << "no test microphone (CLIPQUILL_TEST_AUDIO is unset)";
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
            ASSERT_TRUE(w->recordingState().gblnRecording);
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

// The studio a test kills: started as a child of this test program.
TEST(TakeStudioChild, DISABLED_RecordsUntilEnded) {
    const QString mode = qEnvironmentVariable("CQ_TAKE_CHILD");
    const QString media = qEnvironmentVariable("CQ_TAKE_MEDIA");
    frmClipquill w(
        WindowlessStartup::run(qEnvironmentVariable("CQ_TAKE_APP"), XdgFolders::fromDesktop()));
    w.show();
    TimelineStudio& t = w.timeline();
    TerminationSignals endOnSignal;
    QTest::mouseClick(t.recordingPanel()->recordButton(), Qt::LeftButton);
    ASSERT_TRUE(w.recordingState().gblnRecording);
    auto until = [&t](qint64 ms) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return t.recorder().elapsedMs() >= ms; }, 20000));
    };
    until(300);
    t.logger().LogMediaEvent(MediaKind::Pictures, media + "/red.jpg");
    until(700);
    t.logger().LogMediaEvent(MediaKind::Pictures, media + "/blue.jpg");
    until(1200);
    t.logger().LogMediaEvent(MediaKind::Pictures, media + "/red.jpg");
    until(2000);
    if (mode == "term")
        QTest::mouseClick(t.recordingPanel()->stopButton(), Qt::LeftButton);
    std::printf("ready\n");
    std::fflush(stdout);
    // Runs as the studio does until a signal ends it (or SIGKILL, without a word).
    QApplication::exec();
}

namespace {

class KilledStudio : public ::testing::Test {
protected:
    void SetUp() override {
        if (!qEnvironmentVariableIsSet("CLIPQUILL_TEST_AUDIO"))
            GTEST_SKIP() << "no test microphone (CLIPQUILL_TEST_AUDIO is unset)";
        for (const auto& [name, color] : {std::pair{"red", Qt::red}, std::pair{"blue", Qt::blue}}) {
            QImage picture(64, 48, QImage::Format_RGB32);
            picture.fill(color);
            ASSERT_TRUE(picture.save(media.filePath(QString(name) + ".jpg")));
        }
    }

    // Runs the child studio until it has recorded three clicks (and in "term" mode pressed
    // Stop), then ends it with the signal.
    void recordAndEnd(const QString& mode, int signal) {
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("CQ_TAKE_CHILD", mode);
        env.insert("CQ_TAKE_APP", app.path());
        env.insert("CQ_TAKE_MEDIA", media.path());
        child.setProcessEnvironment(env);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
                    {"--gtest_filter=TakeStudioChild.DISABLED_RecordsUntilEnded",
                     "--gtest_also_run_disabled_tests"});
        ASSERT_TRUE(child.waitForStarted(10000));
        QByteArray out;
        const bool ready = QTest::qWaitFor(
            [&] {
                out += child.readAllStandardOutput();
                return out.contains("ready\n") || child.state() == QProcess::NotRunning;
            },
            60000);
        ASSERT_TRUE(ready && out.contains("ready\n")) << out.toStdString();
        ::kill(static_cast<pid_t>(child.processId()), signal);
        ASSERT_TRUE(child.waitForFinished(30000));
    }

    void expectTheThreeClicks(frmClipquill& w) {
        const EventGridModel& grid = w.timeline().grid();
        ASSERT_EQ(grid.rowCount(), 3);
        EXPECT_EQ(grid.row(0).file, media.filePath("red.jpg"));
        EXPECT_EQ(grid.row(1).file, media.filePath("blue.jpg"));
        EXPECT_GE(grid.row(2).atMs, 1200);
    }

    test::TestAppFolder app;
    QTemporaryDir media;
};

} // namespace

TEST_F(KilledStudio, ItsTakeComesBackWithEveryClickAndRenders) {
    recordAndEnd("kill", SIGKILL);
    auto w = restoredStudio(app);
    expectTheThreeClicks(*w);
    // At most the last second of voice may be lost.
    EXPECT_GE(w->recordingState().recordingLengthMs, 1000);
    EXPECT_LE(w->recordingState().recordingLengthMs, 3000);
    EXPECT_EQ(WavDurationMs(w->paths().gstrRecordedAudioFileSpec),
              w->recordingState().recordingLengthMs);

    const QString project = media.filePath("Restored");
    w->timeline().projectPanel()->askSaveFolder = [&] {
        return project;
    };
    w->timeline().projectPanel()->cmdSaveProject_Click();
    EXPECT_FALSE(w->timeline().takeKeeper().isUnsaved());
    const QString video = media.filePath("restored.avi");
    const test::StudioRun render =
        test::RunStudioProgram({"--app-dir", app.path(), "--render", project + "/Timeline.txt",
                                "--size", "160X120", "--output", video},
                               {});
    EXPECT_EQ(render.exitCode, 0) << render.err.toStdString();
    EXPECT_GT(QFileInfo(video).size(), 0);
}

TEST_F(KilledStudio, SigtermAfterStopLeavesTheTakeForTheNextStart) {
    recordAndEnd("term", SIGTERM);
    EXPECT_EQ(takeFilesIn(workFolderOf(app)),
              QStringList({"RecordedAudio.wav", QString(kTakeJournalFileName)}));
    auto w = restoredStudio(app);
    expectTheThreeClicks(*w);
    EXPECT_GE(w->recordingState().recordingLengthMs, 1900);
}

TEST(OneStudioPerFolder, ASecondStudioEndsAndLeavesTheFirstOnesFilesAlone) {
    test::TestAppFolder app;
    const QString lockFile = app.file(StudioFolderLock::kLockFileName);
    auto lockHolder = [&] {
        return ReadFileToString(lockFile).section(u'\n', 0, 0).toLongLong();
    };
    QProcess first;
    first.setProcessChannelMode(QProcess::ForwardedChannels);
    first.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path()});
    ASSERT_TRUE(first.waitForStarted(10000));
    ASSERT_TRUE(test::Eventually([&] { return lockHolder() == first.processId(); }, 30000));
    const QString voice = workFolderOf(app) + "/RecordedAudio.wav";
    QDir().mkpath(workFolderOf(app));
    WriteWholeFile("the first studio's voice", voice);

    const test::StudioRun second = test::RunStudioProgram({"--app-dir", app.path()}, {});
    EXPECT_EQ(second.exitCode, 3);
    EXPECT_TRUE(second.err.contains("in use")) << second.err.toStdString();
    EXPECT_EQ(ReadFileToBytes(voice), "the first studio's voice");
    EXPECT_EQ(first.state(), QProcess::Running);
    // A render from the command line needs no lock.
    const test::StudioRun render = test::RunStudioProgram(
        {"--app-dir", app.path(), "--render", app.file("none/Timeline.txt")}, {});
    EXPECT_EQ(render.exitCode, 2);
    EXPECT_TRUE(render.err.contains("Cannot read the timeline")) << render.err.toStdString();

    // A killed studio's lock does not keep the next one out.
    first.kill();
    ASSERT_TRUE(first.waitForFinished(10000));
    QProcess third;
    third.setProcessChannelMode(QProcess::ForwardedChannels);
    third.start(CQ_STUDIO_EXECUTABLE, {"--app-dir", app.path()});
    ASSERT_TRUE(third.waitForStarted(10000));
    EXPECT_TRUE(test::Eventually([&] { return lockHolder() == third.processId(); }, 30000));
    third.terminate();
    EXPECT_TRUE(third.waitForFinished(30000));
}
