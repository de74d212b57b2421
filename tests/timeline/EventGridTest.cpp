#include "FakeMediaDisplay.h"
#include "support/TestRows.h"
#include "timeline/EventGridModel.h"
#include "timeline/EventLogger.h"
#include "timeline/EventLogic.h"
#include "timeline/MediaClickHandler.h"
#include "timeline/TimelineClock.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;
using cq::test::FakeMediaDisplay;

namespace {

struct ManualClock : TimelineClock {
    qint64 ms = 0;
    qint64 elapsedMs() override { return ms; }
};

// One recording's worth of parts around a fake screen.
struct Bench {
    QTemporaryDir work;
    EventGridModel grid;
    ManualClock clock;
    FakeMediaDisplay display;
    EventLogger logger{grid, clock};
    MediaClickHandler clicks{grid, logger, display, work.path()};
};

using test::Event;
using enum MediaKind;

} // namespace

TEST(EventGrid, TheCellsShowTheRowAndTheCellUnderTheMouseIsTheTooltip) {
    EventGridModel grid;
    grid.appendRow(Event(Pictures, 500, "/p.jpg"));
    grid.appendRow(Event(Video, 2500, "/v.mp4", 12345));
    grid.appendRow(Event(Both, 65000, "/w/Hi.jpg", std::nullopt, "Hi there"));
    QStringList cells;
    for (int r = 0; r < grid.rowCount(); ++r)
        for (int c = 0; c < grid.columnCount(); ++c)
            cells << grid.data(grid.index(r, c), Qt::ToolTipRole).toString();
    EXPECT_EQ(cells, QStringList({"1", "Pictures", "0.500", "", "/p.jpg", "",    //
                                  "2", "Video", "2.500", "12.345", "/v.mp4", "", //
                                  "3", "Both", "65.000", "", "/w/Hi.jpg", "Hi there"}));
}

TEST(EventGrid, CorrectionsKeepTimeOrderAndCountsButNotWhileRecording) {
    EventGridModel grid;
    grid.appendRow(Event(Video, 2000, "/v.mp4"));
    grid.appendRow(Event(Pictures, 7000, "/p.jpg"));
    grid.appendRow(Event(Text, 12000, "/w/t.jpg", std::nullopt, "t"));
    // Typing a time moves the row to its place and renumbers.
    EXPECT_TRUE(grid.setData(grid.index(2, EventGridModel::TimeLine), "1.25"));
    EXPECT_EQ(grid.row(0), Event(Text, 1250, "/w/t.jpg", std::nullopt, "t"));
    EXPECT_EQ(grid.text(2, 0), "3");
    EXPECT_FALSE(grid.setData(grid.index(1, EventGridModel::TimeLine), "soon"));
    EXPECT_FALSE(grid.setData(grid.index(1, EventGridModel::FileSpec), "/x"));
    EXPECT_TRUE(grid.removeEventRow(0));
    EXPECT_EQ(grid.mediaTypes(), QList<MediaKind>({Video, Pictures}));
    EXPECT_EQ(grid.text(1, 0), "2");

    grid.setEditable(false);
    EXPECT_FALSE(grid.flags(grid.index(0, EventGridModel::TimeLine)) & Qt::ItemIsEditable);
    EXPECT_FALSE(grid.removeEventRow(0));
    EXPECT_FALSE(grid.setRowTime(0, 9000));
    EXPECT_EQ(grid.rowCount(), 2);
}

TEST(EventGrid, TextPictureNameIsTheFirstFiftyCleanCharacters) {
    const QString eighty = "Hello, world!\r\nThis line (one) has 50+ chars_and-more; yes "
                           "indeed it goes on and on";
    const QString logged = TextForEvent(eighty);
    EXPECT_FALSE(logged.contains('\r'));
    EXPECT_FALSE(logged.contains('\n'));
    EXPECT_EQ(logged, "Hello, world!This line (one) has 50+ chars_and-more; yes indeed it goes "
                      "on and on");
    EXPECT_EQ(TextPictureFileName(eighty), "Hello worldThis line (one) has 50+ chars_and-mor.jpg");
    EXPECT_EQ(TextPictureFileName("a\tb\nc"), "a bc.jpg");
    EXPECT_EQ(TextPictureFileName("Doh!"), "Doh.jpg");
}

TEST(MediaClicks, VideoPictureAndTheSameVideoAgainGiveTheRowsOfARecording) {
    Bench b;
    b.logger.setRecording(true);
    b.clock.ms = 2000;
    b.clicks.showAndLogFile(MediaTabId::Video, "/m/clip.mp4");
    b.clock.ms = 7000;
    b.clicks.showAndLogFile(MediaTabId::Pictures, "/p/a.jpg");
    b.clock.ms = 9481;
    b.display.positionMs = 7481; // the clip has played on
    b.clicks.showAndLogFile(MediaTabId::Video, "/m/clip.mp4");
    EXPECT_EQ(b.grid.rows(), QList<TimelineEvent>({Event(Video, 2000, "/m/clip.mp4"),
                                                   Event(Pictures, 7000, "/p/a.jpg"),
                                                   Event(Video, 9481, "/m/clip.mp4", 7481)}));
    // The second click did not restart the clip.
    EXPECT_EQ(b.display.calls.count("video /m/clip.mp4 @-1"), 1);
    EXPECT_TRUE(b.display.calls.contains("video front"));
}

TEST(MediaClicks, SoundsPlayUnloggedUntypedFilesLogEmptyTypeNothingLoggedWhenIdle) {
    Bench b;
    b.clicks.showAndLogFile(MediaTabId::Video, "/m/clip.mp4");
    b.clicks.showAndLogText("Hi", TextOption::Both);
    EXPECT_EQ(b.grid.rowCount(), 0);
    EXPECT_EQ(b.display.calls.first(), "video /m/clip.mp4 @-1");

    b.logger.setRecording(true);
    b.clock.ms = 1500;
    b.clicks.showAndLogFile(MediaTabId::Audio, "/music/song.MP3");
    EXPECT_TRUE(b.display.calls.contains("audio 1 /music/song.MP3"));
    EXPECT_EQ(b.logger.mediaCount(), 0);
    b.clicks.showAndLogFile(MediaTabId::Audio, "/music/tune.mid");
    EXPECT_EQ(b.grid.rows(), QList<TimelineEvent>({Event(Untyped, 1500, "/music/tune.mid")}));
}

TEST(MediaClicks, TextClicksSavePicturesToggleBackAndSpeechIsNotLogged) {
    Bench b;
    b.logger.setRecording(true);
    b.clock.ms = 1000;
    b.clicks.showAndLogFile(MediaTabId::Pictures, "/p/a.jpg");
    b.clock.ms = 3000;
    b.clicks.showAndLogText("Doh!\r\nReally?", TextOption::Text);
    const QString picture = b.work.filePath("DohReally.jpg");
    EXPECT_TRUE(QFileInfo(picture).isFile());
    EXPECT_EQ(b.grid.rows().last(), Event(Text, 3000, picture, std::nullopt, "Doh!Really?"));

    // The same text again goes back to the picture and logs nothing itself.
    b.clicks.showAndLogText("Doh!\r\nReally?", TextOption::Text);
    EXPECT_EQ(b.display.calls.last(), "switch 1");
    EXPECT_EQ(b.grid.rowCount(), 2);
    EXPECT_TRUE(b.clicks.previousClickText().isEmpty());

    b.clicks.showAndLogText("Say it", TextOption::Speech);
    EXPECT_EQ(b.display.calls.last(), "speak Say it");
    b.clicks.showAndLogText("Both ways", TextOption::Both);
    EXPECT_EQ(b.grid.rows().last().kind, Both);
    // The display switch's own call never toggles.
    b.clicks.showAndLogText("Both ways", TextOption::Both, true);
    EXPECT_EQ(b.grid.rowCount(), 4);

    b.display.canSavePictures = false;
    int failures = 0;
    QObject::connect(&b.clicks, &MediaClickHandler::textPictureFailed, [&] { ++failures; });
    b.clicks.showAndLogText("Unsaved", TextOption::Text);
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(b.grid.rowCount(), 5);
}

// A name that no row can hold is shown and refused with a message, never logged to break the
// journal and the project.
TEST(MediaClicks, NamesWithLineBreaksTabsOrControlsAreShownButRefused) {
    Bench b;
    b.logger.setRecording(true);
    QStringList refused;
    QObject::connect(&b.logger, &EventLogger::eventRefused,
                     [&](const QString&, const QString& text) { refused << text; });
    b.clicks.showAndLogFile(MediaTabId::Pictures, "/p/a.jpg");
    for (const char* name :
         {"/p/two\nlines.jpg", "/p/tab\there.jpg", "/p/cr\r.jpg", "/p/bell\a.jpg"})
        b.clicks.showAndLogFile(MediaTabId::Pictures, QString::fromLatin1(name));
    b.clicks.showAndLogFile(MediaTabId::Video, "/m/new\nclip.mp4");
    EXPECT_EQ(b.display.calls.size(), 6); // every item is still shown
    EXPECT_EQ(b.display.calls[1], "picture /p/two\nlines.jpg");
    EXPECT_EQ(b.grid.rows(), QList<TimelineEvent>({Event(Pictures, 0, "/p/a.jpg")}));
    ASSERT_EQ(refused.size(), 5);
    EXPECT_TRUE(
        refused[0].startsWith(QStringLiteral("\"/p/two\u2426lines.jpg\" is shown but was not "
                                             "recorded")))
        << refused[0].toStdString();
    EXPECT_EQ(b.logger.mediaCount(), 1); // the next click is still number 2
    b.clicks.showAndLogFile(MediaTabId::Pictures, "/p/b.jpg");
    EXPECT_EQ(b.grid.rows().last(), Event(Pictures, 0, "/p/b.jpg"));

    // A text's controls are dropped from its row: it is logged, one field of one line.
    b.clicks.showAndLogText(QString::fromLatin1("Bell\a and\x1b escape\tend"), TextOption::Text);
    EXPECT_EQ(b.grid.rows().last().text, "Bell and escape end");
    EXPECT_EQ(refused.size(), 5);
}

TEST(MediaClicks, TheCountStopsAtItsSixteenBitLimitUntilTheNextRecording) {
    Bench b;
    b.logger.setRecording(true);
    for (int i = 0; i < EventLogger::kMaxEvents; ++i)
        b.logger.LogMediaEvent(Pictures, "/p.png");
    EXPECT_FALSE(b.logger.LogMediaEvent(Pictures, "/p.png"));
    EXPECT_EQ(b.grid.rowCount(), EventLogger::kMaxEvents);
    // Record empties the grid and starts the count again.
    b.logger.reset();
    EXPECT_EQ(b.grid.rowCount(), 0);
    EXPECT_TRUE(b.logger.LogMediaEvent(Pictures, "/p.png"));
}
