#include "app/widgets/frmClipquill.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/PlayerControls.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "support/TestAppFolder.h"
#include "text/TextListFile.h"
#include "text/widgets/TextFrame.h"

#include <QListWidget>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

TEST(MainWindowText, TextListStartsFromTheFileAndDeletionsReachIt) {
    test::TestAppFolder app;
    frmClipquill w(WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    w.show();
    ASSERT_NE(w.fraText(), nullptr);
    EXPECT_EQ(w.fraText()->entries(), DefaultTextList());
    QListWidget* list = w.findChild<QListWidget*>("lstText");
    ASSERT_NE(list, nullptr);
    list->setCurrentRow(2);
    QTest::keyClick(list, Qt::Key_Delete);
    QStringList expected = DefaultTextList();
    expected.removeAt(2);
    EXPECT_EQ(LoadTextList(app.file("System/TTS.txt")), expected);
    EXPECT_EQ(w.textList(), expected);
}

TEST(MainWindowText, TabControlsDriveTheirPlayersAndRememberTheLastOneUsed) {
    test::TestAppFolder app;
    frmClipquill w(WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    EXPECT_EQ(w.WMPAudio(0), w.WindowsMediaPlayer1()->player());
    EXPECT_NE(w.WMPAudio(2), nullptr);
    EXPECT_EQ(w.WMPAudio(4), nullptr) << "the text tab speaks, it plays nothing";
    PlayerControls* pictures = w.createPlayerControls(2, &w);
    pictures->cmdMute_Click();
    EXPECT_TRUE(w.WMPAudio(2)->mute());
    EXPECT_FALSE(w.WMPAudio(3)->mute());
    QTest::mouseClick(pictures, Qt::LeftButton);
    EXPECT_EQ(w.lastAudioPlayerIndex(), 2);
    PlayerControls* text = w.createPlayerControls(4, &w);
    text->cmdMute_Click(); // silences the voice; no player, no error
    EXPECT_TRUE(text->muted());
}
