#include "app/widgets/KeepAwake.h"
#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "library/widgets/DisplayPlace.h"
#include "library/widgets/MediaBrowser.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"
#include "support/TestAudio.h"
#include "support/TestRows.h"
#include "support/WidgetFinding.h"
#include "take/Recorder.h"
#include "take/RecordingController.h"
#include "take/widgets/LevelBar.h"
#include "take/widgets/MicrophoneMeter.h"
#include "take/widgets/RecordingPanel.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogic.h"
#include "timeline/MediaClickHandler.h"
#include "timeline/Replay.h"
#include "timeline/widgets/EventGridView.h"
#include "timeline/widgets/ProjectPanel.h"

#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace cq;

TEST(TimelineWidgets, TheEventsButtonShowsAndHidesTheGrid) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    auto* events = w->findChild<QPushButton*>("cmdEvents");
    auto* grid = w->findChild<EventGridView*>("MSFlexGrid1");
    ASSERT_TRUE(events && grid);
    EXPECT_TRUE(w->findChild<QLabel*>("lblRecording")->isHidden());
    EXPECT_TRUE(grid->isHidden());
    events->click();
    EXPECT_TRUE(grid->isVisible());
    events->click();
    EXPECT_TRUE(grid->isHidden());
}

TEST(TimelineWidgets, GridRowsCanBeDeletedWithTheKeyboardOnlyWhenNotRecording) {
    EventGridModel model;
    model.appendRow(test::Event(MediaKind::Pictures, 1000, "/a.jpg"));
    model.appendRow(test::Event(MediaKind::Pictures, 2000, "/b.jpg"));
    EventGridView view(model);
    view.show();
    view.setCurrentIndex(model.index(0, 0));
    model.setEditable(false);
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_EQ(model.rowCount(), 2);
    model.setEditable(true);
    QTest::keyClick(&view, Qt::Key_Delete);
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.row(0), test::Event(MediaKind::Pictures, 2000, "/b.jpg"));
}

namespace {
// Lets the recording run until its own clock, the one its rows are timed by, reaches ms.
void recordUntil(TimelineStudio& t, qint64 ms) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return t.recorder().elapsedMs() >= ms; }, 20000));
}
QString makePicture(const QString& path, QColor color) {
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(color);
    image.save(path);
    return path;
}
} // namespace

namespace {

// The recording's clock just before and just after a click: its row's time lies between.
struct ClickTime {
    qint64 from = 0, to = 0;
};

// A picture at 0.5 s, a text at 1 s, the same text again at 1.25 s (back to the picture, logged
// again) and another picture at 1.5 s; Stop at 1.9 s.
void recordFourClicks(frmClipquill& w, const QString& mediaFolder, QList<ClickTime>& clicks) {
    TimelineStudio& t = w.timeline();
    w.keepAwake().tmrMoveMouseToPreventScreenSaver().start(50000);
    QTest::mouseClick(t.recordingPanel()->recordButton(), Qt::LeftButton);
    ASSERT_TRUE(w.timeline().controller().gblnRecording());
    EXPECT_TRUE(t.recordingPanel()->tmrRecording().isActive());
    ASSERT_TRUE(w.mediaBrowser().showFolder(MediaTabId::Pictures, mediaFolder));
    auto* pictures = w.findChild<QListWidget*>("File1_2");
    auto* texts = w.findChild<QListWidget*>("lstText");
    ASSERT_TRUE(pictures && texts);
    ASSERT_GT(texts->count(), 0);
    const QString text = texts->item(0)->text();
    const auto clickAt = [&](qint64 ms, QListWidget* list, const QString& entry) {
        recordUntil(t, ms);
        ClickTime click{t.recorder().elapsedMs()};
        test::ClickItem(list, entry);
        click.to = t.recorder().elapsedMs();
        clicks << click;
    };
    clickAt(500, pictures, "red.jpg");
    clickAt(1000, texts, text);
    clickAt(1250, texts, text);
    clickAt(1500, pictures, "blue.jpg");
    recordUntil(t, 1900);
    QTest::mouseClick(t.recordingPanel()->stopButton(), Qt::LeftButton);
}

void expectTheFourRows(frmClipquill& w, const QString& red, const QList<ClickTime>& clicks) {
    const EventGridModel& grid = w.timeline().grid();
    ASSERT_EQ(grid.rowCount(), 4);
    using enum MediaKind;
    EXPECT_EQ(grid.mediaTypes(), QList<MediaKind>({Pictures, Text, Pictures, Pictures}));
    EXPECT_EQ(grid.row(2).file, red);
    ASSERT_EQ(clicks.size(), 4);
    for (int row = 0; row < 4; ++row) {
        EXPECT_GE(grid.row(row).atMs, clicks[row].from) << row;
        EXPECT_LE(grid.row(row).atMs, clicks[row].to) << row;
    }
    const QString textPicture =
        w.paths().gstrTempFilesDirectory + u'/' + TextPictureFileName(grid.row(1).text);
    EXPECT_EQ(grid.row(1).file, textPicture);
    QFile bmp(textPicture);
    ASSERT_TRUE(bmp.open(QIODevice::ReadOnly));
    EXPECT_EQ(bmp.read(2), "BM");
    EXPECT_FALSE(QImage(textPicture, "BMP").isNull());
}

} // namespace

TEST(TimelineWidgets, RecordClickStopSaveRestartOpenAndReplay) {
    REQUIRE_AUDIO();
    test::TestAppFolder app;
    QTemporaryDir media;
    const QString red = makePicture(media.filePath("red.jpg"), Qt::red);
    const QString blue = makePicture(media.filePath("blue.jpg"), Qt::blue);
    const QString project = media.filePath("My Project");
    QString work;
    {
        auto w = test::OpenStudio(app);
        // The microphone is heard from the start, before any take: the meter beside the record
        // buttons shows the test tone (about -21 dBFS).
        const LevelBar* level = w->timeline().recordingPanel()->microphoneMeter()->bar();
        ASSERT_TRUE(QTest::qWaitFor([&] { return level->value() > -30; }, 10000));
        EXPECT_LT(level->value(), -15);
        work = w->paths().gstrTempFilesDirectory;
        QList<ClickTime> clicks;
        recordFourClicks(*w, media.path(), clicks);
        EXPECT_FALSE(w->timeline().controller().gblnRecording());
        EXPECT_TRUE(w->timeline().recordingPanel()->recordingLabel()->isHidden());
        EXPECT_FALSE(w->timeline().recordingPanel()->tmrRecording().isActive());
        EXPECT_FALSE(w->keepAwake().tmrMoveMouseToPreventScreenSaver().isActive());
        EXPECT_NEAR(w->timeline().controller().recordingLengthMs(), 1900, 300);
        expectTheFourRows(*w, red, clicks);
        w->timeline().projectPanel()->askSaveFolder = [&] {
            return project;
        };
        w->timeline().projectPanel()->chooseFolderAndSave();
        EXPECT_TRUE(QFile::exists(project + "/Timeline.txt"));
        EXPECT_TRUE(QFile::exists(project + "/RecordedAudio.wav"));
        w->close(); // the work folder is emptied on the way out
    }
    EXPECT_FALSE(QFile::exists(work + "/RecordedAudio.wav"));

    auto w = test::OpenStudio(app);
    TimelineStudio& t = w->timeline();
    t.projectPanel()->askOpenFolder = [&] {
        return project;
    };
    t.projectPanel()->chooseFolderAndOpen();
    ASSERT_EQ(t.grid().rowCount(), 4);
    EXPECT_TRUE(QFile::exists(t.grid().row(1).file));
    EXPECT_NEAR(w->timeline().controller().recordingLengthMs(), 1900, 300);

    QList<int> shown;
    QObject::connect(&t.replay(), &Replay::rowShown, [&](int row) { shown << row; });
    QTest::mouseClick(t.recordingPanel()->replayButton(), Qt::LeftButton);
    EXPECT_TRUE(t.replay().isRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !t.replay().isRunning(); }, 20000));
    EXPECT_EQ(shown, QList<int>({0, 1, 2, 3}));
    EXPECT_EQ(w->displayPlace().currentSurface(), DisplaySurface::Picture);
    EXPECT_EQ(w->displayPlace().lastPicture(), blue);
}

TEST(TimelineWidgets, ATimeTypedIntoTheGridMovesItsRow) {
    EventGridModel model;
    model.appendRow(test::Event(MediaKind::Pictures, 1000, "/a.jpg"));
    model.appendRow(test::Event(MediaKind::Pictures, 2000, "/b.jpg"));
    model.appendRow(test::Event(MediaKind::Pictures, 3000, "/c.jpg"));
    EventGridView view(model);
    view.show();
    const QModelIndex time = model.index(2, EventGridModel::TimeLine);
    view.setCurrentIndex(time);
    view.edit(time);
    auto* editor = view.viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, "0.5");
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return model.row(0).file == "/c.jpg"; }, 5000));
    EXPECT_EQ(model.row(0), test::Event(MediaKind::Pictures, 500, "/c.jpg"));
    EXPECT_EQ(model.row(2), test::Event(MediaKind::Pictures, 2000, "/b.jpg"));
}
