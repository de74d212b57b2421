// Records the default microphone into the file named on the command line until it is killed;
// the crash test kills it mid-recording.
#include "take/Recorder.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc < 2)
        return 2;
    cq::Recorder recorder;
    if (recorder.start(QString::fromLocal8Bit(argv[1])) != cq::Recorder::StartResult::Started) {
        std::fprintf(stderr, "could not record: %s\n", qPrintable(recorder.errorString()));
        return 1;
    }
    // Tell the test once sound is arriving, so it knows how much it should find.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (recorder.elapsedMs() > 0) {
            std::printf("capturing\n");
            std::fflush(stdout);
            poll.stop();
        }
    });
    poll.start(10);
    return app.exec();
}
