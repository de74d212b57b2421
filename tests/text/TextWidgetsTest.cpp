#include "ModalHelper.h"
#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"
#include "support/WidgetFinding.h"
#include "text/TextListFile.h"
#include "text/widgets/TextDisplaySurface.h"
#include "text/widgets/TextFrame.h"
#include "text/widgets/frmDisplayText.h"
#include "text/widgets/frmSendText.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;
using cq::test::Child;
using cq::test::WhenShown;

namespace {

// Clicks a button after the current event has been handled, so a modal window it opens does
// not run inside the helper's timer.
void ClickLater(QWidget* window, const char* name) {
    QPushButton* button = Child<QPushButton>(window, name);
    QTimer::singleShot(0, button, [button] { QTest::mouseClick(button, Qt::LeftButton); });
}

struct TextFrameFixture : ::testing::Test {
    QTemporaryDir dir;
    QString file = dir.filePath("TTS.txt");
    TextFrame frame{nullptr, file, {"alpha", "beta", "gamma"}};
    QListWidget* list = frame.lstText();
};

} // namespace

TEST_F(TextFrameFixture, DeleteKeyRemovesTheSelectedEntryAndSavesTheList) {
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_FALSE(QFile::exists(file)) << "nothing selected, nothing written";

    list->setCurrentRow(1);
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_EQ(frame.entries(), QStringList({"alpha", "gamma"}));
    EXPECT_EQ(ReadFileToBytes(file), EncodeTextList({"alpha", "gamma"}));

    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_A);
    EXPECT_EQ(frame.entries().size(), 2);

    for (int i = 0; i < 2; ++i) {
        list->setCurrentRow(0);
        QTest::keyClick(list, Qt::Key_Delete);
    }
    EXPECT_EQ(ReadFileToBytes(file), QByteArray("\r\n"));
    EXPECT_TRUE(LoadTextList(file).isEmpty());
}

TEST_F(TextFrameFixture, EditedEntryTypedOverTwoLinesIsJoinedAndSaved) {
    list->setCurrentRow(1);
    QSignalSpy edited(&frame, &TextFrame::textEdited);
    bool sawDisplay = false;
    const auto sendWatch = WhenShown("frmSendText", [](QWidget* dialog) {
        EXPECT_EQ(Child<QPlainTextEdit>(dialog, "txtMsg")->toPlainText(), "beta");
        Child<QPlainTextEdit>(dialog, "txtMsg")->setPlainText("Hello\nWorld");
        ClickLater(dialog, "lblPreview_1");
    });
    // Save shows the text once over the whole screen; a click closes it early.
    const auto displayWatch = WhenShown("frmDisplayText", [&sawDisplay](QWidget* display) {
        sawDisplay = true;
        auto* surface = display->findChild<TextDisplaySurface*>("picDisplay");
        QTimer::singleShot(50, surface, [surface] { QTest::mouseClick(surface, Qt::LeftButton); });
    });
    frame.lstText_DblClick();
    EXPECT_TRUE(sawDisplay);
    ASSERT_EQ(edited.size(), 1);
    EXPECT_EQ(edited.at(0).at(0).toString(), "HelloWorld");
    EXPECT_EQ(frame.entries(), QStringList({"alpha", "HelloWorld", "gamma"}));
    EXPECT_EQ(LoadTextList(file), frame.entries());
}

TEST_F(TextFrameFixture, CancelledEditChangesNothing) {
    list->setCurrentRow(0);
    QSignalSpy edited(&frame, &TextFrame::textEdited);
    const auto watch = WhenShown("frmSendText", [](QWidget* dialog) {
        Child<QPlainTextEdit>(dialog, "txtMsg")->setPlainText("changed");
        ClickLater(dialog, "lblPreview_2");
    });
    frame.lstText_DblClick();
    EXPECT_TRUE(edited.isEmpty());
    EXPECT_EQ(frame.entries(), QStringList({"alpha", "beta", "gamma"}));
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(TextFrameFixture, WholeListEditorStoresLinesAsCrLfAndSkipsBlankOnes) {
    ASSERT_TRUE(SaveTextList(frame.entries(), file));
    const auto saveWatch = WhenShown("frmAddMultipleLinesOfText", [](QWidget* editor) {
        auto* box = Child<QPlainTextEdit>(editor, "txtMultipleLinesOfText");
        EXPECT_EQ(box->toPlainText(), "alpha\nbeta\ngamma\n");
        box->setPlainText("one\n\ntwo\nthree");
        ClickLater(editor, "cmdOK");
    });
    QTest::mouseClick(Child<QPushButton>(&frame, "cmdAddMultiLinesOfText"), Qt::LeftButton);
    EXPECT_EQ(frame.entries(), QStringList({"one", "two", "three"}));
    EXPECT_EQ(ReadFileToBytes(file),
              InvertCharacters("one\r\n\r\ntwo\r\nthree") + QByteArray("\r\n"));

    const auto cancelWatch = WhenShown("frmAddMultipleLinesOfText", [](QWidget* editor) {
        Child<QPlainTextEdit>(editor, "txtMultipleLinesOfText")->setPlainText("lost");
        ClickLater(editor, "cmdCancel");
    });
    frame.cmdAddMultiLinesOfText_Click();
    EXPECT_EQ(frame.entries(), QStringList({"one", "two", "three"}));
    EXPECT_EQ(LoadTextList(file), QStringList({"one", "two", "three"}));
}

TEST_F(TextFrameFixture, ClickReportsTextAndOption) {
    QSignalSpy clicked(&frame, &TextFrame::textClicked);
    Child<QAbstractButton>(&frame, "optTextAndOrSpeech_2")->click();
    const QRect row = list->visualItemRect(list->item(2));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row.center());
    ASSERT_EQ(clicked.size(), 1);
    EXPECT_EQ(clicked.at(0).at(0).toString(), "gamma");
    EXPECT_EQ(clicked.at(0).at(1).value<TextOption>(), TextOption::Both);
}

TEST(frmDisplayText, ShowsForItsDurationWithEachParagraphOnALineOfItsOwn) {
    frmDisplayText display("Twenty characters\r\nx", nullptr); // 20 with the line break
    QElapsedTimer clock;
    clock.start();
    display.exec();
    EXPECT_EQ(display.displayMilliseconds(), 1200);
    EXPECT_GE(clock.elapsed(), 1150);
    // The paragraph after the line break starts a line of its own.
    const QStringList lines = display.surface()->layout().lines;
    EXPECT_EQ(lines.last(), "x");
    EXPECT_EQ(lines.join(QString()), "Twenty charactersx");
}

TEST(frmDisplayText, TooBigTextShowsTheMessageAndClosesAtOnce) {
    QString text;
    while (text.size() < 10000)
        text += QStringLiteral("word word\r\n");
    frmDisplayText display(text, nullptr);
    display.resize(640, 480); // the screen of the test platform may be large
    QString message;
    const auto watch = WhenShown("msgTooBig", [&message](QWidget* box) {
        message = static_cast<QMessageBox*>(box)->text();
        QTimer::singleShot(0, box, [box] { static_cast<QMessageBox*>(box)->accept(); });
    });
    QElapsedTimer clock;
    clock.start();
    display.exec();
    EXPECT_EQ(message, "Your message is too big.");
    EXPECT_EQ(display.displayMilliseconds(), 80);
    // A text this long would otherwise stay for many seconds; fitting it on a loaded machine
    // takes one or two, so "at once" is well below the time the text would have been shown.
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST(frmSendText, EmptyTextNeitherPreviewsNorSaves) {
    frmSendText dialog(QString(), nullptr);
    dialog.show();
    bool displayed = false;
    const auto watch = WhenShown("frmDisplayText", [&displayed](QWidget* w) {
        displayed = true;
        w->close();
    });
    QTest::mouseClick(Child<QPushButton>(&dialog, "lblPreview_0"), Qt::LeftButton);
    QTest::mouseClick(Child<QPushButton>(&dialog, "lblPreview_1"), Qt::LeftButton);
    // Preview shows its page from within the click: none was made, none will come.
    EXPECT_FALSE(displayed);
    for (QWidget* top : QApplication::topLevelWidgets())
        EXPECT_FALSE(top->objectName() == "frmDisplayText" && top->isVisible());
    EXPECT_TRUE(dialog.isVisible());
}

TEST(TextDisplaySurface, SavesWhatItShowsAsBmp) {
    QTemporaryDir dir;
    TextDisplaySurface surface;
    surface.resize(320, 240);
    EXPECT_FALSE(surface.savePicture(dir.filePath("empty.bmp"))) << "nothing drawn yet";
    ASSERT_TRUE(surface.Preview("Doh!"));
    const QString file = dir.filePath("Text 1 'x'.bmp");
    ASSERT_TRUE(surface.savePicture(file));
    EXPECT_TRUE(ReadFileToBytes(file).startsWith("BM"));
    const QImage back(file, "BMP");
    ASSERT_EQ(back.size(), QSize(320, 240));
    EXPECT_EQ(back.convertToFormat(QImage::Format_RGB32), surface.picture());
    EXPECT_FALSE(surface.savePicture(QString()));
}
