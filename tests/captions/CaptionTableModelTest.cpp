#include "captions/CaptionTableModel.h"
#include "captions/CueTimeText.h"
#include "support/CuePrinting.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace cq;

namespace {

const CaptionCues kCues{{1000, 2500, QStringLiteral("Hello")},
                        {3000, 4000, QStringLiteral("first line\nsecond line")},
                        {5000, 6000, QStringLiteral("Bye")}};

bool edit(CaptionTableModel& model, int row, int column, const QString& typed) {
    return model.setData(model.index(row, column), typed);
}

QString shown(const CaptionTableModel& model, int row, int column) {
    return model.data(model.index(row, column)).toString();
}

} // namespace

TEST(CueTimes, ShownAsMinutesAndTypedInTheUsualWays) {
    EXPECT_EQ(CueTimeText(0), "0:00.000");
    EXPECT_EQ(CueTimeText(1500), "0:01.500");
    EXPECT_EQ(CueTimeText(754321), "12:34.321");
    EXPECT_EQ(CueTimeText(3723040), "1:02:03.040");
    for (qint64 ms : {0LL, 1500LL, 59999LL, 754321LL, 3723040LL})
        EXPECT_EQ(ParseCueTime(CueTimeText(ms)), ms) << ms;

    // Plain seconds too; the clock forms and what is refused are the time reader's own.
    EXPECT_EQ(ParseCueTime(u"1.5"), 1500);
    EXPECT_EQ(ParseCueTime(u" 90 "), 90000);
    EXPECT_EQ(ParseCueTime(u"1:60"), -1);
}

TEST(CaptionTableModel, TypedTimesAndTextsChangeTheCueOrAreRefusedWithAReason) {
    CaptionTableModel model;
    model.loadCues(kCues);
    QSignalSpy refused(&model, &CaptionTableModel::editRefused);
    QSignalSpy changed(&model, &CaptionTableModel::cuesChanged);

    EXPECT_EQ(shown(model, 1, CaptionTableModel::Start), "0:03.000");
    EXPECT_EQ(shown(model, 1, CaptionTableModel::Text), "first line second line");
    EXPECT_EQ(model.data(model.index(1, CaptionTableModel::Text), Qt::ToolTipRole).toString(),
              "first line\nsecond line");
    // An editor closed unchanged keeps the line break it could not show.
    EXPECT_TRUE(edit(model, 1, CaptionTableModel::Text, "first line second line"));
    EXPECT_EQ(model.cues()[1].text, "first line\nsecond line");
    EXPECT_TRUE(edit(model, 0, CaptionTableModel::Start, "1")); // the same time, typed short
    EXPECT_EQ(changed.count(), 0);

    EXPECT_TRUE(edit(model, 0, CaptionTableModel::Text, "  Hello there \n"));
    EXPECT_EQ(model.cues()[0].text, "Hello there");

    for (const auto& [column, typed] : {std::pair{CaptionTableModel::End, "0:00.500"},
                                        std::pair{CaptionTableModel::Start, "0:02.500"},
                                        std::pair{CaptionTableModel::Start, "soon"}})
        EXPECT_FALSE(edit(model, 0, column, typed)) << typed;
    EXPECT_EQ(refused.count(), 3);
    EXPECT_TRUE(refused.at(2).at(0).toString().contains("soon"));
    EXPECT_EQ(model.cues()[0], (CaptionCue{1000, 2500, "Hello there"}));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(model.isEditedByUser());
}

TEST(CaptionTableModel, AStartTypedPastTheNextCueMovesTheCueToItsPlace) {
    CaptionTableModel model;
    model.loadCues(kCues);
    QSignalSpy moved(&model, &QAbstractItemModel::rowsMoved);
    ASSERT_TRUE(edit(model, 0, CaptionTableModel::End, "0:08"));
    ASSERT_TRUE(edit(model, 0, CaptionTableModel::Start, "0:05.500"));
    EXPECT_EQ(moved.count(), 1);
    const QStringList texts{model.cues()[0].text, model.cues()[1].text, model.cues()[2].text};
    EXPECT_EQ(texts, QStringList({"first line\nsecond line", "Bye", "Hello"}));
    ASSERT_TRUE(edit(model, 2, CaptionTableModel::Start, "0"));
    EXPECT_EQ(model.cues()[0].text, "Hello");
    EXPECT_EQ(model.cues()[0].startMs, 0);
}

TEST(CaptionTableModel, AddedCuesFitBetweenTheOthersAndDeletedOnesGo) {
    CaptionTableModel model;
    EXPECT_EQ(model.addCue(-1), 0);
    EXPECT_EQ(model.cues()[0], (CaptionCue{0, CaptionTableModel::kNewCueMs, QString()}));
    model.loadCues(kCues);
    // After the last cue, at a time of its own, and just before another (never shorter than
    // half a second).
    EXPECT_EQ(model.addCue(-1), 3);
    EXPECT_EQ(model.cues()[3].startMs, 6000);
    EXPECT_EQ(model.cues()[3].endMs, 8000);
    EXPECT_EQ(model.addCue(2400), 1);
    EXPECT_EQ(model.cues()[1].endMs, 3000);
    EXPECT_EQ(model.addCue(4800), 3);
    EXPECT_EQ(model.cues()[3].endMs, 5300);
    EXPECT_EQ(model.rowCount(), 6);

    EXPECT_FALSE(model.removeCue(6));
    EXPECT_TRUE(model.removeCue(0));
    EXPECT_EQ(model.rowCount(), 5);
    EXPECT_EQ(model.cues()[0].startMs, 2400);
}

TEST(CaptionTableModel, OnlyTheUsersChangesCountAsEditedAndOnlyChangesAreKept) {
    CaptionTableModel model;
    QSignalSpy changed(&model, &CaptionTableModel::cuesChanged);
    model.replaceCues(kCues); // made anew: kept, but none of the user's
    EXPECT_FALSE(model.isEditedByUser());
    EXPECT_EQ(changed.count(), 1);
    model.removeCue(1);
    EXPECT_TRUE(model.isEditedByUser());
    EXPECT_EQ(changed.count(), 2);
    model.replaceCues(kCues);
    EXPECT_FALSE(model.isEditedByUser());

    // Cues read back may hold corrections; reading them is no change to write again.
    model.loadCues(kCues);
    EXPECT_TRUE(model.isEditedByUser());
    model.loadCues({});
    EXPECT_FALSE(model.isEditedByUser());
    model.loadCues({{9000, 9500, "late"}, {100, 900, "early"}});
    EXPECT_EQ(model.cues()[0].text, "early");
    model.clear();
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_FALSE(model.isEditedByUser());
    EXPECT_EQ(changed.count(), 3);
}
