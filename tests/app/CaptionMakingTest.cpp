#include "app/widgets/CaptionMaking.h"
#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "captions/CaptionRecognitionJob.h"
#include "captions/CaptionTableModel.h"
#include "captions/widgets/CaptionPanel.h"
#include "platform/WavFormat.h"
#include "support/SpokenVoice.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "support/TestRows.h"
#include "take/RecordingController.h"
#include "timeline/EventGridModel.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

const QString kSentence = QStringLiteral("Welcome to our new video about the summer garden.");
const QStringList kWords{"welcome", "new", "video", "about", "summer", "garden"};
constexpr int kRecognitionMs = 90000;

class CaptionMakingInTheWindow : public ::testing::Test {
protected:
    void SetUp() override {
        w = test::OpenStudio(app);
        panel = w->findChild<CaptionPanel*>("CaptionPanel");
        ASSERT_NE(panel, nullptr);
        panel->show();
        make = panel->findChild<QPushButton*>("cmdMakeCaptions");
        cancel = panel->findChild<QPushButton*>("cmdCancelCaptions");
        status = panel->findChild<QLabel*>("lblCaptionsStatus");
        ASSERT_TRUE(make && cancel && status);
    }

    // The spoken sentence as the take's voice, with a text shown at 0.2 s.
    void prepareSpokenTake() {
        ASSERT_TRUE(test::MakeSpokenVoice(kSentence, w->paths().gstrRecordedAudioFileSpec));
        w->timeline().controller().setRecordingLengthMs(
            WavDurationMs(w->paths().gstrRecordedAudioFileSpec));
        w->timeline().grid().appendRow(
            test::Event(MediaKind::Text, 200, "Hi.jpg", std::nullopt, "Our garden"));
    }

    bool makingEnded() { return w->captionMaking().job() == nullptr && make->isVisible(); }

    test::TestAppFolder app;
    std::unique_ptr<frmClipquill> w;
    CaptionPanel* panel = nullptr;
    QPushButton* make = nullptr;
    QPushButton* cancel = nullptr;
    QLabel* status = nullptr;
};

} // namespace

TEST_F(CaptionMakingInTheWindow, TheVoicesWordsAndTheTextsBecomeTheEditorsCues) {
    make->click();
    EXPECT_TRUE(status->text().contains("no recorded voice")) << status->text().toStdString();
    EXPECT_EQ(w->captionMaking().job(), nullptr);

    prepareSpokenTake();
    QTemporaryDir noModel;
    qputenv("CLIPQUILL_SPEECH_MODEL_DIR", QFile::encodeName(noModel.path()));
    make->click();
    qunsetenv("CLIPQUILL_SPEECH_MODEL_DIR");
    EXPECT_TRUE(makingEnded());
    EXPECT_TRUE(status->text().contains("pocketsphinx-en-us")) << status->text().toStdString();

    make->click();
    ASSERT_NE(w->captionMaking().job(), nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return makingEnded(); }, kRecognitionMs));

    const CaptionCues& cues = w->timeline().captions().cues();
    ASSERT_GE(cues.size(), 2) << status->text().toStdString();
    EXPECT_EQ(cues.first(),
              (CaptionCue{200, w->timeline().controller().recordingLengthMs(), "Our garden"}))
        << "the text, before the voice that starts a second in";
    QString spoken;
    for (const CaptionCue& cue : cues.mid(1))
        spoken += cue.text + u' ';
    EXPECT_GE(test::WordsHeard(spoken, kWords).size(), 2) << spoken.toStdString();
}

TEST_F(CaptionMakingInTheWindow, CancelAndANewTakeLeaveTheCuesAsTheyWere) {
    prepareSpokenTake();
    CaptionTableModel& captions = w->timeline().captions();
    captions.replaceCues({{0, 900, "Kept"}});
    make->click();
    ASSERT_NE(w->captionMaking().job(), nullptr);
    EXPECT_TRUE(cancel->isVisible() && !make->isVisible());
    cancel->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return makingEnded(); }, kRecognitionMs));
    EXPECT_TRUE(status->text().contains("cancelled")) << status->text().toStdString();
    EXPECT_EQ(captions.cues(), (CaptionCues{{0, 900, "Kept"}}));

    // Cues put in while the voice is heard (an opened project, a new take) win over it.
    captions.clear();
    make->click();
    ASSERT_NE(w->captionMaking().job(), nullptr);
    captions.loadCues({{100, 700, "Opened"}});
    ASSERT_TRUE(QTest::qWaitFor([&] { return makingEnded(); }, kRecognitionMs));
    EXPECT_EQ(captions.cues(), (CaptionCues{{100, 700, "Opened"}}));

    // Closing the window mid-recognition ends it with the window, its work file gone.
    captions.clear();
    make->click();
    QPointer<CaptionRecognitionJob> job = w->captionMaking().job();
    ASSERT_FALSE(job.isNull());
    const QString work = w->paths().gstrTempFilesDirectory;
    w.reset();
    EXPECT_TRUE(job.isNull());
    EXPECT_EQ(QDir(work).entryList({"*.raw"}, QDir::Files), QStringList());
}
