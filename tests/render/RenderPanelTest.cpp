#include "RenderTestMedia.h"

#include "app/StudioRender.h"
#include "platform/ToolPool.h"
#include "render/widgets/RenderPanel.h"
#include "render/widgets/RenderProgressDialog.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/TestAppFolder.h"
#include "support/TestRows.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

class RenderPanelTest : public ::testing::Test {
protected:
    RenderPanelTest()
        : paths(AppPaths::forFolder(app.path())),
          media(paths.gstrFFMPEGFileSpec, LocateFfprobe(paths)) {
        QDir().mkpath(paths.gstrTempFilesDirectory);
        studio.gstrVideoRes = QStringLiteral("160X120");
    }

    void recordingWithOnePicture(double seconds) {
        ASSERT_TRUE(media.voice(paths.gstrRecordedAudioFileSpec, seconds));
        const QString pic = app.file("red.jpg");
        ASSERT_TRUE(media.solidPicture(pic, "red", 320, 240));
        panel.setRequestProvider([this, pic, seconds] {
            return StudioRenderRequest(paths, studio, {test::Event(MediaKind::Pictures, 1000, pic)},
                                       paths.gstrRecordedAudioFileSpec, qRound64(seconds * 1000),
                                       {});
        });
    }

    test::TestAppFolder app;
    AppPaths paths;
    StudioSettings studio;
    test::RenderTestMedia media;
    ToolPool pool;
    RenderPanel panel{paths, studio, pool};
};

} // namespace

TEST_F(RenderPanelTest, VoiceSwitchesStartEvenWithoutNoiseReductionAndReachTheRender) {
    auto* even = panel.findChild<QCheckBox*>("chkEvenVoice");
    auto* noise = panel.findChild<QCheckBox*>("chkReduceNoise");
    ASSERT_TRUE(even && noise);
    EXPECT_TRUE(even->isChecked());
    EXPECT_FALSE(noise->isChecked());

    QTest::mouseClick(even, Qt::LeftButton);
    QTest::mouseClick(noise, Qt::LeftButton);
    const RenderInputs in =
        StudioRenderRequest(paths, studio, {}, paths.gstrRecordedAudioFileSpec, 1000, {}).inputs;
    EXPECT_FALSE(in.voice.even);
    EXPECT_TRUE(in.voice.reduceNoise);
}

TEST_F(RenderPanelTest, RenderShowsProgressThenPlayHandsOverTheResult) {
    recordingWithOnePicture(2.0);
    panel.setQuiet(true);
    QSignalSpy done(&panel, &RenderPanel::renderFinished);
    QSignalSpy play(&panel, &RenderPanel::playRenderedRequested);

    panel.cmdPlayRendered_Click(); // nothing rendered yet
    EXPECT_EQ(play.count(), 0);

    int highest = -1;
    QTest::mouseClick(panel.findChild<QPushButton*>("cmdRender"), Qt::LeftButton);
    auto* dialog = panel.findChild<RenderProgressDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    QObject::connect(panel.currentJob(), &RenderJob::progressed,
                     [&](int p) { highest = std::max(highest, p); });
    QPointer<RenderProgressDialog> watched(dialog);
    ASSERT_TRUE(done.wait(60000));
    EXPECT_TRUE(!watched || !watched->isVisible()) << "the progress dialog goes away";
    EXPECT_EQ(highest, 100);
    EXPECT_TRUE(panel.lastReport().ok()) << panel.lastReport().message.toStdString();
    EXPECT_TRUE(QFileInfo::exists(paths.gstrFinalMixAVIFileSpec));

    QTest::mouseClick(panel.findChild<QPushButton*>("cmdPlayRendered"), Qt::LeftButton);
    ASSERT_EQ(play.count(), 1);
    EXPECT_EQ(play.first().first().toString(), paths.gstrFinalMixAVIFileSpec);
}

TEST_F(RenderPanelTest, CancelButtonOfTheProgressDialogStopsTheRender) {
    recordingWithOnePicture(30.0);
    studio.gstrVideoRes = QStringLiteral("640X480");
    panel.setQuiet(true);
    QSignalSpy done(&panel, &RenderPanel::renderFinished);
    QTest::mouseClick(panel.findChild<QPushButton*>("cmdRender"), Qt::LeftButton);
    auto* cancel = panel.findChild<QPushButton*>("cmdCancelRender");
    ASSERT_NE(cancel, nullptr);
    QTest::mouseClick(cancel, Qt::LeftButton);
    QPointer<RenderProgressDialog> dialog(panel.findChild<RenderProgressDialog*>());
    ASSERT_TRUE(done.wait(5000));
    EXPECT_TRUE(!dialog || !dialog->isVisible());
    EXPECT_EQ(panel.lastReport().outcome, RenderReport::Outcome::Cancelled);
    EXPECT_FALSE(QFileInfo::exists(paths.gstrFinalMixAVIFileSpec));
    EXPECT_TRUE(panel.findChild<QPushButton*>("cmdRender")->isEnabled());
}
