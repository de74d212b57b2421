#include "take/RecordingController.h"
#include "../timeline/FakeMediaDisplay.h"
#include "support/FileSizeLimit.h"
#include "support/TestAudio.h"
#include "support/TestRows.h"
#include "take/Recorder.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/PictureList.h"
#include "timeline/Replay.h"
#include "timeline/SlideShow.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

struct NoPictures : PictureList {
    QString folder() const override { return "/none"; }
    QStringList entries() const override { return {"a.jpg", "b.jpg"}; }
    QList<int> selectedRows() const override { return {}; }
};

// The record and stop buttons with everything they reach, around a fake screen and voice.
struct Studio {
    explicit Studio(QString voiceFile = {}) {
        if (voiceFile.isEmpty())
            voiceFile = work.filePath("RecordedAudio.wav");
        controller = std::make_unique<RecordingController>(
            RecordingController::Parts{grid, logger, recorder, display, voice, replay, &show},
            voiceFile);
        QObject::connect(
            controller.get(), &RecordingController::information,
            [this](const QString& title, const QString& text) { messages << title + ": " + text; });
        QObject::connect(
            controller.get(), &RecordingController::warning,
            [this](const QString& title, const QString& text) { messages << title + ": " + text; });
        QObject::connect(controller.get(), &RecordingController::stopPressed, [this] { ++stops; });
    }
    QTemporaryDir work;
    EventGridModel grid;
    Recorder recorder;
    EventLogger logger{grid, recorder};
    cq::test::FakeMediaDisplay display;
    cq::test::FakeVoicePlayer voice;
    Replay replay{grid, display, voice};
    NoPictures pictures;
    SlideShow show{pictures, display, logger};
    std::unique_ptr<RecordingController> controller;
    QStringList messages;
    int stops = 0;
};

// Lets the recording run until its own clock, the one its rows are timed by, reaches ms.
bool recordUntil(Recorder& recorder, qint64 ms) {
    return QTest::qWaitFor([&] { return recorder.elapsedMs() >= ms; }, 20000);
}

} // namespace

TEST(RecordingController, StopWhileIdleEndsReplaySlideShowAndWaits) {
    Studio s;
    s.grid.appendRow(test::Event(MediaKind::Pictures, 50000, "/a.jpg"));
    QFile(s.controller->voiceFileSpec()).open(QIODevice::WriteOnly);
    s.controller->replay();
    ASSERT_TRUE(s.replay.isRunning());
    s.show.setWaitText("100");
    s.show.cmdSlideShow_Click(); // a show with a 100 s wait per picture
    ASSERT_TRUE(s.show.isRunning());
    s.controller->stop();
    EXPECT_FALSE(s.show.isRunning());
    EXPECT_FALSE(s.replay.isRunning());
    EXPECT_TRUE(s.voice.ended);
    EXPECT_TRUE(s.display.calls.contains("stop players"));
    EXPECT_EQ(s.stops, 1);
    EXPECT_TRUE(s.messages.isEmpty());
}

TEST(RecordingController, ReplayWithoutARecordingSaysSo) {
    Studio s;
    s.controller->replay();
    EXPECT_FALSE(s.replay.isRunning());
    EXPECT_EQ(s.messages, QStringList({"Recording: Please record a sound first"}));
}

TEST(RecordingController, NoInputDeviceSaysNoMicrophoneWasFound) {
    // Without a sound server there is no input device. The sound system is set up once per
    // process, so the case runs in a child process of its own.
    if (!qEnvironmentVariableIsSet("CQ_TEST_NO_SOUND_SERVER")) {
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("CQ_TEST_NO_SOUND_SERVER", "1");
        env.insert("PULSE_SERVER", "unix:/nonexistent/clipquill-no-server");
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(),
                    {"--gtest_filter=RecordingController.NoInputDeviceSaysNoMicrophoneWasFound"});
        ASSERT_TRUE(child.waitForFinished(30000));
        const QByteArray out = child.readAllStandardOutput();
        EXPECT_EQ(child.exitCode(), 0) << out.data();
        EXPECT_TRUE(out.contains("[       OK ]") || out.contains("SKIPPED")) << out.data();
        return;
    }
    if (Recorder::hasInputDevice())
        GTEST_SKIP() << "an input device is present without a sound server";
    Studio s;
    EXPECT_FALSE(s.controller->checkInputDevice());
    ASSERT_EQ(s.messages.size(), 1);
    EXPECT_TRUE(s.messages.first().startsWith("No microphone: No microphone was found"));
    EXPECT_FALSE(s.messages.first().contains("You may still record sound"));
    s.controller->record();
    EXPECT_FALSE(s.controller->gblnRecording());
    EXPECT_EQ(s.messages.size(), 2);
    EXPECT_TRUE(s.messages.last().contains("No sound input"));
}

TEST(RecordingController, RecordTwiceIsHarmlessAndStopKeepsTheVoiceAndRows) {
    REQUIRE_AUDIO();
    Studio s;
    const QString voice = s.controller->voiceFileSpec();
    QFile old(voice);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("the last recording");
    old.close();
    s.grid.appendRow(test::Event(MediaKind::Pictures, 1000, "/old.jpg"));
    s.controller->record();
    ASSERT_TRUE(s.controller->gblnRecording()) << s.messages.join('\n').toStdString();
    EXPECT_EQ(s.grid.rowCount(), 0); // the grid starts afresh
    EXPECT_TRUE(s.voice.released);   // the replay player let go of the old file
    EXPECT_FALSE(s.grid.isEditable());
    ASSERT_TRUE(recordUntil(s.recorder, 600));
    const qint64 before = s.recorder.elapsedMs();
    s.logger.LogMediaEvent(MediaKind::Pictures, "/p.jpg");
    const qint64 after = s.recorder.elapsedMs();
    s.controller->record(); // again: nothing changes
    EXPECT_EQ(s.grid.rowCount(), 1);
    ASSERT_TRUE(recordUntil(s.recorder, 1000));
    s.controller->stop();
    EXPECT_FALSE(s.controller->gblnRecording());
    EXPECT_TRUE(s.grid.isEditable());
    EXPECT_NEAR(s.controller->recordingLengthMs(), 1000, 250);
    EXPECT_EQ((QFileInfo(voice).size() - 44) * 1000 / Recorder::kBytesPerSecond,
              s.controller->recordingLengthMs());
    // Timed by the recording's own clock at the moment of logging.
    EXPECT_GE(s.grid.row(0).atMs, before);
    EXPECT_LE(s.grid.row(0).atMs, after);
    EXPECT_TRUE(s.messages.isEmpty()) << s.messages.join('\n').toStdString();
}

TEST(RecordingController, AnUnwritableWorkFolderIsNamedAndNothingRecords) {
    REQUIRE_AUDIO();
    Studio s("/nonexistent/ClipquillTempFiles/RecordedAudio.wav");
    s.controller->record();
    EXPECT_FALSE(s.controller->gblnRecording());
    ASSERT_EQ(s.messages.size(), 1);
    EXPECT_TRUE(s.messages[0].contains("/nonexistent/ClipquillTempFiles/RecordedAudio.wav"));
    EXPECT_TRUE(s.grid.isEditable());
}

TEST(RecordingController, AFullDiskEndsCaptureWithAMessageAndKeepsTheVoice) {
    REQUIRE_AUDIO();
    Studio s;
    // As in the studio, the microphone is open before the press.
    ASSERT_TRUE(s.recorder.listen());
    ASSERT_TRUE(QTest::qWaitFor([&] { return s.recorder.meter().windowsMeasured() > 0; }, 10000));
    // The file-size limit stands in for a disk that fills up after half a second of voice.
    test::FileSizeLimit limit(44 + Recorder::kBytesPerSecond / 2);
    ASSERT_TRUE(limit.isSet());
    s.controller->record();
    ASSERT_TRUE(s.controller->gblnRecording());
    const bool told = QTest::qWaitFor([&] { return !s.messages.isEmpty(); }, 10000);
    limit.lift();
    ASSERT_TRUE(told);
    ASSERT_EQ(s.messages.size(), 1);
    EXPECT_TRUE(s.messages[0].contains("could not be written any further"))
        << s.messages[0].toStdString();
    EXPECT_TRUE(s.messages[0].contains("0.5 seconds of voice were captured"));
    EXPECT_TRUE(s.controller->gblnRecording()); // the timeline goes on until Stop
    // The meter goes on too: the microphone is still heard.
    const qint64 windows = s.recorder.meter().windowsMeasured();
    EXPECT_TRUE(QTest::qWaitFor([&] { return s.recorder.meter().windowsMeasured() >= windows + 5; },
                                10000));
    EXPECT_GT(s.recorder.meter().level().rmsDb, -40.0);
    s.logger.LogMediaEvent(MediaKind::Pictures, "/late.jpg");
    EXPECT_GE(s.grid.row(0).atMs, 500);
    s.controller->stop();
    EXPECT_EQ(s.controller->recordingLengthMs(), 500);
    EXPECT_EQ(QFileInfo(s.controller->voiceFileSpec()).size(), 44 + Recorder::kBytesPerSecond / 2);
}
