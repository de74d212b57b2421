#include "app/widgets/frmClipquill.h"
#include "support/FifoWatch.h"
#include "support/StudioWindow.h"
#include "support/TestAppFolder.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QComboBox>
#include <QFileInfo>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace cq;

TEST(MainWindow, TitleCarriesTheVersionWithAThreeDigitRevision) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    EXPECT_TRUE(
        w->windowTitle().contains(QRegularExpression("^Clipquill v\\.\\d+\\.\\d+\\.\\d{3}$")))
        << w->windowTitle().toStdString();
}

TEST(MainWindow, VideoSizeListFollowsTheChosenAndTypedSize) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    auto* combo = w->findChild<QComboBox*>("cboVideoRes");
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(w->studioSettings().gstrVideoRes, combo->currentText());
    combo->setCurrentIndex(combo->findText("1920X1080"));
    EXPECT_EQ(w->studioSettings().gstrVideoRes, "1920X1080");
    combo->setEditText("1024X768");
    EXPECT_EQ(w->studioSettings().gstrVideoRes, "1024X768");
}

TEST(MainWindow, SaveDirectorySettingsWritesTheSettingsFile) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    w->directorySettings().gstrMyVideoDirectory = "/clips";
    auto* save = w->findChild<QPushButton*>("cmdSaveDirectories");
    ASSERT_NE(save, nullptr);
    QTest::mouseClick(save, Qt::LeftButton);
    DirectorySettings back;
    back.LoadDirectoriesFromClipquillSetupFile(app.file("ClipquillSetup.txt"));
    EXPECT_EQ(back.gstrMyVideoDirectory, "/clips");
}

TEST(MainWindow, ClosingEmptiesTheWorkFolderButKeepsIt) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    test::WriteFile(app.file("ClipquillTempFiles/RecordedAudio.wav"), "RIFF");
    test::WriteFile(app.file("ClipquillTempFiles/FinalMix.avi"), "AVI");
    w->close();
    EXPECT_FALSE(QFileInfo::exists(app.file("ClipquillTempFiles/RecordedAudio.wav")));
    EXPECT_FALSE(QFileInfo::exists(app.file("ClipquillTempFiles/FinalMix.avi")));
    EXPECT_TRUE(QFileInfo(app.file("ClipquillTempFiles")).isDir());
}

TEST(MainWindow, AFifoInPlaceOfTheSplashPictureIsNeverOpened) {
    test::TestAppFolder app;
    const QString splash = AppPaths::forFolder(app.path()).splashPictureFileSpec;
    QFile::remove(splash);
    test::FifoWatch fifos;
    ASSERT_TRUE(fifos.make(splash));
    fifos.start();
    auto w = test::OpenStudio(app);
    // A picture page is shown when its timer fires: once it is idle, nothing more will read.
    ASSERT_TRUE(QTest::qWaitForWindowExposed(w.get()));
    auto* pictureWait = w->findChild<QTimer*>("tmrPictureWait");
    ASSERT_NE(pictureWait, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !pictureWait->isActive(); }, 10000));
    EXPECT_EQ(fifos.stop(), QStringList());
}

TEST(MainWindow, EveryControlIsNamedInTheAccessibilityTree) {
    test::TestAppFolder app;
    auto w = test::OpenStudio(app);
    const auto widgets = w->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        auto* button = qobject_cast<QAbstractButton*>(widget);
        // Scroll bars belong to their list, which carries the name.
        if (!widget->isVisible() || qobject_cast<QScrollBar*>(widget) ||
            !(button || qobject_cast<QComboBox*>(widget) ||
              qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QAbstractSlider*>(widget) ||
              qobject_cast<QProgressBar*>(widget)))
            continue;
        QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(iface, nullptr);
        EXPECT_FALSE(iface->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
        // A button that shows only a picture says what it does in its tooltip too.
        if (button && button->text().isEmpty()) {
            EXPECT_FALSE(button->toolTip().isEmpty()) << widget->objectName().toStdString();
        }
        if (!widget->toolTip().isEmpty()) {
            EXPECT_EQ(iface->text(QAccessible::Description), widget->toolTip())
                << widget->objectName().toStdString();
        }
    }
}
