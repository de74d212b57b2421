#include "captions/widgets/CaptionPanel.h"
#include "captions/CaptionTableModel.h"
#include "support/CuePrinting.h"

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

class CaptionPanelTest : public ::testing::Test {
protected:
    void SetUp() override {
        model.loadCues({{1000, 2500, QStringLiteral("Helo")}, {3000, 4000, QStringLiteral("Bye")}});
        panel.cmdCaptions_Click();
        ASSERT_TRUE(panel.isVisible());
        table = panel.findChild<QTableView*>("tblCaptions");
        ASSERT_NE(table, nullptr);
    }

    QPushButton* button(const char* name) {
        auto* b = panel.findChild<QPushButton*>(name);
        EXPECT_NE(b, nullptr) << name;
        return b;
    }

    // Types over the cell as the user does: F2, select all, the text, Return.
    void typeInto(int row, int column, const QString& text) {
        table->setCurrentIndex(model.index(row, column));
        QTest::keyClick(table, Qt::Key_F2);
        typeInOpenEditor(text);
    }

    // The editor hands its text over after Return, from the event loop.
    void typeInOpenEditor(const QString& text) {
        QPointer<QLineEdit> editor = table->viewport()->findChild<QLineEdit*>();
        ASSERT_TRUE(editor && editor->isVisible()) << "no cell editor is open";
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !editor; }, 10000));
    }

    QString status() { return panel.findChild<QLabel*>("lblCaptionsStatus")->text(); }

    CaptionTableModel model;
    CaptionPanel panel{model};
    QTableView* table = nullptr;
};

// The message box of that name among the panel's children, once it is open.
QMessageBox* openQuestion(QWidget& parent, const char* name) {
    QMessageBox* box = nullptr;
    const bool open = QTest::qWaitFor(
        [&] {
            box = parent.findChild<QMessageBox*>(name);
            return box && box->isVisible();
        },
        10000);
    return open ? box : nullptr;
}

} // namespace

TEST_F(CaptionPanelTest, TextsAndTimesAreCorrectedInPlace) {
    typeInto(0, CaptionTableModel::Text, "Hello");
    EXPECT_EQ(model.cues()[0].text, "Hello");
    typeInto(1, CaptionTableModel::End, "0:04.750");
    EXPECT_EQ(model.cues()[1].endMs, 4750);

    typeInto(1, CaptionTableModel::End, "0:02");
    EXPECT_EQ(model.cues()[1].endMs, 4750);
    EXPECT_TRUE(status().contains("must end after it starts")) << status().toStdString();
    // The next change that goes through clears the reason.
    typeInto(1, CaptionTableModel::Start, "3.5");
    EXPECT_EQ(model.cues()[1].startMs, 3500);
    EXPECT_TRUE(status().isEmpty());
    EXPECT_TRUE(model.isEditedByUser());
}

TEST_F(CaptionPanelTest, AddPutsACueAtTheStudiosTimeAndDeleteRemovesTheSelectedOne) {
    panel.currentTimeMs = [] {
        return 2400;
    };
    button("cmdAddCaption")->click();
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(table->currentIndex(), model.index(1, CaptionTableModel::Text));
    // Its text is typed at once.
    typeInOpenEditor("In between");
    EXPECT_EQ(model.cues()[1], (CaptionCue{2400, 3000, "In between"}));
    panel.currentTimeMs = [] {
        return -1;
    };
    button("cmdAddCaption")->click();
    typeInOpenEditor("At the end");
    EXPECT_EQ(model.cues()[3], (CaptionCue{4000, 6000, "At the end"}));

    table->setCurrentIndex(model.index(0, CaptionTableModel::Start));
    button("cmdDeleteCaption")->click();
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.cues()[0].text, "In between");
    // The Delete key too, but not while a cell is being typed into.
    QTest::keyClick(table, Qt::Key_Delete);
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.cues()[0].text, "Bye");
    QTest::keyClick(table, Qt::Key_F2);
    auto* editor = table->viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_Delete);
    EXPECT_EQ(model.rowCount(), 2);
}

TEST_F(CaptionPanelTest, MakeCaptionsAsksBeforeReplacingCorrectedCues) {
    QPushButton* make = button("cmdMakeCaptions");
    EXPECT_FALSE(make->isEnabled()) << "nothing to make them with yet";
    int started = 0;
    panel.setMakeCaptions([&] { ++started; });
    EXPECT_TRUE(make->isEnabled());

    // Cues made earlier and not touched since are replaced without a question.
    model.replaceCues(model.cues());
    make->click();
    EXPECT_EQ(started, 1);
    EXPECT_EQ(panel.findChild<QMessageBox*>("replaceCaptionsQuestion"), nullptr);

    typeInto(1, CaptionTableModel::Text, "Goodbye");
    make->click();
    QMessageBox* box = openQuestion(panel, "replaceCaptionsQuestion");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(started, 1) << "the question is open; nothing started yet";
    box->findChild<QPushButton*>("Keep")->click();
    EXPECT_EQ(started, 1);
    EXPECT_EQ(model.cues()[1].text, "Goodbye");

    make->click();
    box = openQuestion(panel, "replaceCaptionsQuestion");
    ASSERT_NE(box, nullptr);
    box->findChild<QPushButton*>("Replace")->click();
    EXPECT_EQ(started, 2);
}
