#include "platform/FileSyncer.h"
#include "platform/WavFileWriter.h"
#include "platform/WavFormat.h"
#include "support/HeldSync.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cerrno>
#include <unistd.h>

using namespace cq;

TEST(FileSyncer, ASlowDiskHoldsUpNeitherTheVoiceNorItsEnd) {
    QTemporaryDir dir;
    const QString path = dir.filePath("v.wav");
    WavFileWriter writer(8000, 1);
    test::HeldSync held; // let go before the writer's syncer ends
    writer.syncer().setSyncFunction(held.function());
    writer.setHeaderEveryBytes(100);
    ASSERT_TRUE(writer.open(path));
    ASSERT_TRUE(writer.append(QByteArray(100, '\1')));
    ASSERT_TRUE(held.waitEntered(1));

    // The disk has not answered: writing goes on, header updates and all, and so does the end.
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(writer.append(QByteArray(100, '\2')));
    EXPECT_EQ(WavDurationMs(path), 2100 * 1000 / 16000);
    EXPECT_TRUE(writer.close());
    EXPECT_FALSE(writer.isOpen());
    EXPECT_TRUE(writer.syncer().isBusy());
    EXPECT_EQ(held.entered(), 1);

    // Once it answers, the asks made meanwhile are served by one more sync, of the closed file.
    QSignalSpy synced(&writer.syncer(), &FileSyncer::synced);
    held.release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return synced.size() == 2; }, 30000));
    EXPECT_FALSE(writer.syncer().isBusy());
    EXPECT_EQ(held.entered(), 2);
}

TEST(FileSyncer, AFailedSyncIsReportedAndAFileWithoutADiskIsNot) {
    QTemporaryDir dir;
    WavFileWriter writer(8000, 1);
    QSignalSpy failed(&writer.syncer(), &FileSyncer::syncFailed);
    writer.syncer().setSyncFunction([](int) {
        errno = EIO;
        return -1;
    });
    ASSERT_TRUE(writer.open(dir.filePath("v.wav")));
    ASSERT_TRUE(writer.updateHeader());
    ASSERT_TRUE(failed.wait(30000));
    EXPECT_EQ(failed.first().first().toString(), QString::fromLocal8Bit(strerror(EIO)));

    // A pipe has nothing on a disk: fdatasync refuses it (EINVAL), which is no failure.
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    FileSyncer pipeSyncer(true);
    QSignalSpy pipeSynced(&pipeSyncer, &FileSyncer::synced);
    QSignalSpy pipeFailed(&pipeSyncer, &FileSyncer::syncFailed);
    QString why;
    ASSERT_TRUE(pipeSyncer.follow(ends[1], &why));
    pipeSyncer.requestSync();
    EXPECT_TRUE(pipeSynced.wait(30000));
    EXPECT_EQ(pipeFailed.size(), 0);
    pipeSyncer.release();
    ::close(ends[0]);
    ::close(ends[1]);
}
