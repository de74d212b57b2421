// A stand-in for a studio in the middle of a take, for the tests to kill: "take <work folder>"
// records a voice and logs rows the way the studio does, "lock <folder>" holds a studio's
// folder lock. Each says what it did on stdout, then waits on stdin for its end.
#include "platform/WavFileWriter.h"
#include "take/StudioFolderLock.h"
#include "take/TakeFiles.h"
#include "take/TakeJournal.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

using namespace cq;

namespace {

int recordTake(const QString& workFolder) {
    const TakeFiles files(workFolder, QDir(workFolder).filePath("RecordedAudio.wav"));
    WavFileWriter voice(8000, 1);
    // The header is never brought up to date: the test repairs it from the file's size.
    voice.setHeaderEveryBytes(qint64(1) << 40);
    TakeJournal journal;
    if (!voice.open(files.voiceFileSpec()) || !journal.start(files.journalFileSpec()))
        return 1;
    for (int second = 0; second < 3; ++second) {
        QByteArray samples(16000, char(second + 1));
        if (!voice.append(samples))
            return 1;
        const TimelineEvent row{MediaKind::Pictures,
                                second * 1000 + 500,
                                std::nullopt,
                                QStringLiteral("/media/picture %1.jpg").arg(second),
                                {}};
        if (!journal.append(row, second + 1))
            return 1;
    }
    std::printf("recorded 3 rows and 48000 bytes\n");
    std::fflush(stdout);
    std::getchar();
    return 0;
}

int holdLock(const QString& folder) {
    StudioFolderLock lock(folder);
    if (!lock.tryLock())
        return 1;
    std::printf("locked\n");
    std::fflush(stdout);
    std::getchar();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 3 && args[1] == "take")
        return recordTake(args[2]);
    if (args.size() == 3 && args[1] == "lock")
        return holdLock(args[2]);
    return 2;
}
