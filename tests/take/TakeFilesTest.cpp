#include "take/TakeFiles.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "studio/TimelineFile.h"
#include "support/FileSizeLimit.h"
#include "support/HeldSync.h"
#include "support/TestRows.h"
#include "take/StudioFolderLock.h"
#include "take/TakeJournal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;

namespace {

// Starts the helper and waits for its first line, what it did before it is killed.
QString startHelper(QProcess& helper, const QStringList& args) {
    helper.start(CQ_TAKE_HELPER, args);
    EXPECT_TRUE(helper.waitForStarted(10000));
    EXPECT_TRUE(helper.waitForReadyRead(30000));
    return QString::fromUtf8(helper.readLine()).trimmed();
}

TimelineEvent pictureRow(int count) {
    return test::Event(MediaKind::Pictures, count * 1000,
                       QStringLiteral("/media/p%1.jpg").arg(count));
}

QByteArray pictureLine(int count) {
    return TimelineLine(pictureRow(count), count, "/").toUtf8() + "\r\n";
}

} // namespace

TEST(KeptTake, AKilledTakeComesBackWithEveryClickAndItsWholeVoice) {
    QTemporaryDir work;
    QProcess helper;
    ASSERT_EQ(startHelper(helper, {"take", work.path()}), "recorded 3 rows and 48000 bytes");
    helper.kill();
    ASSERT_TRUE(helper.waitForFinished(10000));
    EXPECT_EQ(helper.exitStatus(), QProcess::CrashExit);

    const TakeFiles files(work.path(), work.filePath("RecordedAudio.wav"));
    ASSERT_TRUE(files.isUnsaved());
    // The header still says no sound: the recording was never finished.
    EXPECT_EQ(ReadWavInfo(files.voiceFileSpec()).dataBytes, 48000); // counted to the end
    const KeptTake take = files.restore();
    EXPECT_EQ(take.voiceProblem, "");
    EXPECT_EQ(take.voiceMs, 3000);
    const QByteArray voice = ReadFileToBytes(files.voiceFileSpec());
    EXPECT_EQ(voice.mid(40, 4), QByteArray("\x80\xBB\0\0", 4)); // 48000 in the header now
    ASSERT_EQ(take.rows.size(), 3);
    EXPECT_EQ(take.rows[2],
              (TimelineEvent{MediaKind::Pictures, 2500, std::nullopt, "/media/picture 2.jpg", {}}));
    EXPECT_EQ(files.keptFileNames(),
              QStringList({"RecordedAudio.wav", QString::fromLatin1(kTakeJournalFileName)}));
    files.discard();
    EXPECT_FALSE(files.isUnsaved());
    EXPECT_TRUE(QDir(work.path()).isEmpty());
}

TEST(KeptTake, ACutShortRowAndATornFrameAreDroppedOnRestore) {
    QTemporaryDir work;
    const TakeFiles files(work.path(), work.filePath("RecordedAudio.wav"));
    WriteWholeFile(pictureLine(1) + pictureLine(2) + "3\tPict", files.journalFileSpec());
    // 16-bit stereo: 4 bytes a frame; the last frame lost its last byte.
    WriteWholeFile(WavHeader(8000, 2, 16, 0) + QByteArray(32003, '\1'), files.voiceFileSpec());
    const KeptTake take = files.restore();
    ASSERT_EQ(take.rows.size(), 2);
    EXPECT_EQ(take.rows[1].file, "/media/p2.jpg");
    EXPECT_EQ(take.voiceMs, 1000);
    EXPECT_EQ(QFileInfo(files.voiceFileSpec()).size(), 44 + 32000);
    const WavInfo repaired = ReadWavInfo(files.voiceFileSpec());
    EXPECT_EQ(repaired.dataBytes, 32000);

    // A voice that is no WAV at all: the clicks still come back, and the user learns why the
    // voice does not.
    WriteWholeFile("not a recording", files.voiceFileSpec());
    const KeptTake broken = files.restore();
    EXPECT_EQ(broken.rows.size(), 2);
    EXPECT_EQ(broken.voiceMs, -1);
    EXPECT_TRUE(broken.voiceProblem.contains("RIFF")) << broken.voiceProblem.toStdString();
}

// One spoilt line of the journal costs that click alone; the others come back.
TEST(KeptTake, EveryReadableClickComesBackAndTheUnreadableAreCounted) {
    QByteArray five;
    for (int i = 1; i <= 5; ++i)
        five += pictureLine(i);
    const qsizetype third = five.indexOf("3\tPictures");
    auto spoil = [&](const QByteArray& from, const QByteArray& to) {
        return QByteArray(five).replace(five.indexOf(from, third), from.size(), to);
    };
    struct Case {
        QByteArray journal;
        const char* problem;
    };
    const Case cases[] = {
        {spoil("p3", QByteArray("p\0", 2)), "line 3: the line holds zero bytes, so it is not text"},
        {spoil("3.000", "99999999999999999999"),
         "line 3: the time \"99999999999999999999\" is more than 24 hours"},
        {spoil("Pictures", "Pict\xFF\xFEres"),
         "line 3: unknown media type \"Pict\u00FF\u00FEres\""},
    };
    for (const Case& c : cases) {
        const JournalRead read = ReadJournalBytes(c.journal, "/work");
        ASSERT_EQ(read.rows.size(), 4) << c.problem;
        EXPECT_EQ(read.rows[2].file, "/media/p4.jpg");
        EXPECT_EQ(read.unreadable, 1);
        EXPECT_EQ(read.firstProblem, QString::fromUtf8(c.problem));
    }
    // A name the journal holds in another encoding is read, not lost.
    const JournalRead latin = ReadJournalBytes(spoil("p3.jpg", "caf\xE9.jpg") + "6\tPict", "/work");
    ASSERT_EQ(latin.rows.size(), 5);
    EXPECT_EQ(latin.rows[2].file, QStringLiteral("/media/caf\u00E9.jpg"));
    EXPECT_EQ(latin.unreadable, 0);

    QTemporaryDir work;
    const TakeFiles files(work.path(), work.filePath("RecordedAudio.wav"));
    WriteWholeFile(spoil("3.000", "soon") + spoil("Pictures", "?").mid(third),
                   files.journalFileSpec());
    const KeptTake take = files.restore();
    EXPECT_EQ(take.rows.size(), 6);
    EXPECT_EQ(take.unreadableRows, 2);
    EXPECT_EQ(take.rowsProblem, "line 3: the time \"soon\" is not a number of seconds");
}

TEST(KeptTake, AFullDiskStopsTheJournalWithAReasonAndKeepsWhatWasWritten) {
    QTemporaryDir work;
    const TakeFiles files(work.path(), work.filePath("RecordedAudio.wav"));
    TakeJournal journal;
    ASSERT_TRUE(journal.start(files.journalFileSpec()));
    QSignalSpy failed(&journal, &TakeJournal::writeFailed);
    // A file may grow no further than 100 bytes: the disk is full for the journal.
    test::FileSizeLimit limit(100);
    ASSERT_TRUE(limit.isSet());
    int written = 0;
    while (written < 20 && journal.append(pictureRow(written + 1), written + 1))
        ++written;
    limit.lift();
    EXPECT_GE(written, 2);
    EXPECT_LT(written, 20);
    ASSERT_EQ(failed.size(), 1);
    EXPECT_FALSE(failed.first().first().toString().isEmpty());
    EXPECT_FALSE(journal.isOpen());
    EXPECT_FALSE(journal.append(pictureRow(99), 99)); // stays stopped, no second report
    EXPECT_EQ(failed.size(), 1);
    EXPECT_EQ(files.restore().rows.size(), written);
}

TEST(KeptTake, TheJournalWaitsForNoSyncAndASyncFailureStopsIt) {
    QTemporaryDir work;
    const TakeFiles files(work.path(), work.filePath("RecordedAudio.wav"));
    {
        TakeJournal journal;
        test::HeldSync held; // let go before the journal's syncer ends
        journal.syncer().setSyncFunction(held.function());
        ASSERT_TRUE(journal.start(files.journalFileSpec()));
        ASSERT_TRUE(held.waitEntered(1));
        // The disk has not answered the first sync: every click still goes to the file at once.
        for (int i = 1; i <= 5; ++i)
            ASSERT_TRUE(journal.append(pictureRow(i), i));
        EXPECT_EQ(files.restore().rows.size(), 5);
        journal.finish();
        EXPECT_FALSE(journal.isOpen());
        EXPECT_TRUE(journal.syncer().isBusy());
        held.release();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !journal.syncer().isBusy(); }, 30000));
    }

    TakeJournal journal;
    QSignalSpy failed(&journal, &TakeJournal::writeFailed);
    journal.syncer().setSyncFunction([](int) {
        errno = EIO;
        return -1;
    });
    ASSERT_TRUE(journal.start(files.journalFileSpec()));
    ASSERT_TRUE(journal.append(pictureRow(1), 1));
    ASSERT_TRUE(failed.wait(30000));
    EXPECT_TRUE(failed.first().first().toString().contains("synced"))
        << failed.first().first().toString().toStdString();
    EXPECT_FALSE(journal.isOpen());
    EXPECT_FALSE(journal.append(pictureRow(2), 2));
    // The last sync, at the close, fails too: the take was reported once.
    EXPECT_TRUE(QTest::qWaitFor([&] { return !journal.syncer().isBusy(); }, 30000));
    QCoreApplication::processEvents();
    EXPECT_EQ(failed.size(), 1);
}

TEST(StudioFolderLock, ASecondHolderIsRefusedUntilTheFirstIsGoneEvenKilled) {
    QTemporaryDir app;
    QProcess first;
    ASSERT_EQ(startHelper(first, {"lock", app.path()}), "locked");
    StudioFolderLock second(app.path());
    EXPECT_FALSE(second.tryLock());
    EXPECT_TRUE(second.problem().contains("in use")) << second.problem().toStdString();
    EXPECT_TRUE(second.problem().contains(QString::number(first.processId())));
    first.kill(); // its lock file stays behind
    ASSERT_TRUE(first.waitForFinished(10000));
    ASSERT_TRUE(QFile::exists(app.filePath(StudioFolderLock::kLockFileName)));
    EXPECT_TRUE(second.tryLock()) << second.problem().toStdString();
}
