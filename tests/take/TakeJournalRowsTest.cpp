// A long take journal read back after a crash: every line is read once, however many are damaged.
#include "take/TakeJournal.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace cq;

TEST(TakeJournalRows, ADamagedRowEarlyInALongJournalDoesNotSlowTheRestore) {
    QByteArray journal = "1\tVideo\t0.000\t\tclip.mp4\r\n"
                         "2\tVideo\tsoon\t\t/m/b.mp4\r\n";
    for (int i = 0; i < 20000; ++i)
        journal += "3\tPictures\t1.000\t\t/p.jpg\r\n";
    journal += "4\tPictures\t2.0"; // cut short by the end of the studio
    QElapsedTimer timer;
    timer.start();
    const JournalRead read = ReadJournalBytes(journal, "/work");
    // Read line by line this takes milliseconds; re-reading the journal once per line after the
    // damaged one took minutes.
    EXPECT_LT(timer.elapsed(), 10000);
    ASSERT_EQ(read.rows.size(), 20001);
    EXPECT_EQ(read.rows[0].file, "/work/clip.mp4");
    EXPECT_EQ(read.unreadable, 1);
}
