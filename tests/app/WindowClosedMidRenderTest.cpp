#include "app/StudioRender.h"
#include "render/widgets/RenderPanel.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/LiveProcesses.h"
#include "support/StudioWindow.h"
#include "support/TestRows.h"

#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;
using test::Eventually;
using test::ProcessesMentioning;

TEST(WindowClosedMidRender, TakesEveryToolOfTheRenderWithIt) {
    test::TestAppFolder app;
    auto window = test::OpenStudio(app);
    const AppPaths paths = AppPaths::forFolder(app.path());
    const QString video = app.file("long.avi");
    ASSERT_TRUE(test::MakeMedia({"-f", "lavfi", "-i", "testsrc=size=160x120:rate=10:duration=300",
                                 "-c:v", "mpeg4", video}));
    ASSERT_TRUE(
        test::MakeMedia({"-f", "lavfi", "-i", "sine=frequency=440:sample_rate=8000", "-t", "300",
                         "-ac", "1", "-c:a", "pcm_s16le", paths.gstrRecordedAudioFileSpec}));
    RenderPanel& panel = window->renderPanel();
    panel.setQuiet(true);
    panel.setRequestProvider([&paths, video] {
        return StudioRenderRequest(paths, StudioSettings{},
                                   {test::Event(MediaKind::Video, 0, video)},
                                   paths.gstrRecordedAudioFileSpec, 300000, {});
    });
    QTest::mouseClick(panel.findChild<QPushButton*>("cmdRender"), Qt::LeftButton);
    const QByteArray folder = app.path().toUtf8();
    ASSERT_TRUE(
        Eventually([&] { return !ProcessesMentioning(folder, 0, "ffmpeg").isEmpty(); }, 60000))
        << "no ffmpeg started";

    window->close();
    window.reset();
    EXPECT_TRUE(Eventually([&] { return ProcessesMentioning(folder).isEmpty(); }, 2000))
        << ProcessesMentioning(folder).size() << " processes left";
}
