#include "app/widgets/MediaStation.h"
#include "app/widgets/frmClipquill.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/widgets/PlayerControls.h"
#include "library/playback/widgets/VideoPlayerWidget.h"
#include "support/TestAppFolder.h"
#include "text/TextListFile.h"
#include "text/widgets/TextFrame.h"

#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

TEST(MainWindowText, TextListStartsFromTheFileAndDeletionsReachIt) {
    test::TestAppFolder app;
    frmClipquill w(WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    w.show();
    ASSERT_NE(w.media().fraText(), nullptr);
    EXPECT_EQ(w.media().fraText()->entries(), DefaultTextList());
    QListWidget* list = w.findChild<QListWidget*>("lstText");
    ASSERT_NE(list, nullptr);
    list->setCurrentRow(2);
    QTest::keyClick(list, Qt::Key_Delete);
    QStringList expected = DefaultTextList();
    expected.removeAt(2);
    EXPECT_EQ(LoadTextList(app.file("System/TTS.txt")), expected);
    EXPECT_EQ(w.textList(), expected);
}

TEST(MainWindowText, BigTextButtonResizesTheBrowserListsWithTheTextList) {
    test::TestAppFolder app;
    frmClipquill w(WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    auto* big = w.findChild<QPushButton*>("cmdBigText");
    auto* texts = w.findChild<QListWidget*>("lstText");
    auto* files = w.findChild<QListWidget*>("File1_2");
    ASSERT_TRUE(big && texts && files);
    for (int click = 0; click < 2; ++click) {
        QTest::mouseClick(big, Qt::LeftButton);
        EXPECT_DOUBLE_EQ(files->font().pointSizeF(), texts->font().pointSizeF());
    }
    QTest::mouseClick(big, Qt::LeftButton);
    const double first = files->font().pointSizeF();
    QTest::mouseClick(big, Qt::LeftButton);
    EXPECT_NE(files->font().pointSizeF(), first);
}

TEST(MainWindowText, TabControlsDriveTheirOwnPlayers) {
    test::TestAppFolder app;
    frmClipquill w(WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    EXPECT_EQ(w.media().WMPAudio(MediaTabId::Video), w.media().WindowsMediaPlayer1()->player());
    EXPECT_NE(w.media().WMPAudio(MediaTabId::Pictures), nullptr);
    EXPECT_EQ(w.media().WMPAudio(MediaTabId::TextAndSpeech), nullptr)
        << "the text tab speaks, it plays nothing";
    PlayerControls* pictures = w.media().playerControls(MediaTabId::Pictures);
    pictures->cmdMute_Click();
    EXPECT_TRUE(w.media().WMPAudio(MediaTabId::Pictures)->mute());
    EXPECT_FALSE(w.media().WMPAudio(MediaTabId::SoundEffects)->mute());
    PlayerControls* text = w.media().playerControls(MediaTabId::TextAndSpeech);
    text->cmdMute_Click(); // silences the voice; no player, no error
    EXPECT_TRUE(text->muted());
}
