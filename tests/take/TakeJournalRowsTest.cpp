// The journal of a take read back after a crash: the rows before the first damaged one.
#include "take/TakeFiles.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace cq;

TEST(TakeJournalRows, ADamagedRowEarlyInALongJournalEndsTheRowsWithoutSlowingTheRestore) {
    QByteArray journal = "1\tVideo\t0.000\t\tclip.mp4\r\n"
                         "2\tVideo\tsoon\t\t/m/b.mp4\r\n";
    for (int i = 0; i < 20000; ++i)
        journal += "3\tPictures\t1.000\t\t/p.jpg\r\n";
    journal += "4\tPictures\t2.0"; // cut short by the end of the studio
    QElapsedTimer timer;
    timer.start();
    const QList<EventRow> rows = TakeJournalRows(journal, "/work");
    // Read line by line this takes milliseconds; re-reading the journal once per line after the
    // damaged one took minutes.
    EXPECT_LT(timer.elapsed(), 10000);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].fileSpec, "/work/clip.mp4");

    const QList<EventRow> whole = TakeJournalRows("1\tVideo\t0.000\t\t/a.mp4\r\n"
                                                  "2\tText\t1.500\t\tT.jpg\tHello\r\n"
                                                  "3\tPictures\t2",
                                                  "/work");
    ASSERT_EQ(whole.size(), 2);
    EXPECT_EQ(whole[1].text, "Hello");
}
