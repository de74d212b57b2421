// Saves version N of the test recording as a project and kills itself with SIGKILL once the
// save reaches the named step: "save <project> <work> <media> <N> <step> [no-exchange]".
#include "ProjectVersions.h"
#include "timeline/Project.h"
#include "timeline/ProjectFolderSwap.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

using namespace cq;

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 7 || args[1] != "save")
        return 2;
    const QString killAt = args[6];
    ProjectSaveSeamsForTests().refuseExchange = args.size() > 7 && args[7] == "no-exchange";
    ProjectSaveSeamsForTests().afterStep = [killAt](const char* step) {
        if (killAt == QLatin1String(step))
            std::raise(SIGKILL);
    };
    const int version = args[5].toInt();
    const QList<TimelineEvent> rows = test::PrepareVersion(version, args[3], args[4]);
    const ProjectResult saved = SaveProject(args[2], rows, args[3] + "/RecordedAudio.wav", args[3],
                                            test::VersionCaptions(version));
    if (!saved.ok()) {
        std::fprintf(stderr, "%s\n", qPrintable(saved.error));
        return 1;
    }
    return 0;
}
