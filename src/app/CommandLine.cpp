#include "app/CommandLine.h"

#include "app/CommandLineRender.h"
#include "app/InstallationCheck.h"
#include "app/Startup.h"
#include "app/StudioOptions.h"
#include "app/widgets/frmClipquill.h"
#include "platform/Console.h"
#include "platform/Folders.h"
#include "platform/TerminationSignals.h"
#include "studio/AppFolder.h"
#include "take/StudioFolderLock.h"

#include "Version.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>

#include <csignal>

namespace cq {

namespace {

QStringList argumentsOf(int argc, char** argv) {
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

int runCheck(const WindowlessStartup& startup) {
    const InstallationCheck check = InstallationCheck::run(startup.paths);
    PrintTo(stdout, InstallationCheck::report(startup, check));
    if (check.essentialsUsable())
        return 0;
    PrintTo(stderr, QStringLiteral("Clipquill cannot render without %1: see the lines above.\n")
                        .arg(check.missingEssentials().join(QStringLiteral(", "))));
    return 1;
}

int runRender(const WindowlessStartup& startup, const StudioOptions& options) {
    const CommandLineRenderOptions render{options.render, options.voice, options.size,
                                          options.output};
    StudioSettings studio;
    studio.keepVideoSound = options.videoSound;
    studio.evenVoice = !options.rawVoice;
    studio.reduceNoise = options.reduceNoise;
    studio.captions = options.captions;
    studio.burnCaptions = options.burnCaptions;
    return RunCommandLineRender(startup.paths, studio, render, stdout, stderr);
}

int runStudio(const StudioOptions& options, int argc, char** argv) {
    const bool windowless = options.check || !options.render.isEmpty();
    std::unique_ptr<QCoreApplication> app;
    if (windowless)
        app = std::make_unique<QCoreApplication>(argc, argv);
    else
        app = std::make_unique<QApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Clipquill"));
    QGuiApplication::setDesktopFileName(QLatin1String(kDesktopId));
    // SIGTERM, SIGINT and SIGHUP end the program through its destructors, so no tool outlives it.
    TerminationSignals stopSignals;

    const AppFolderChoice folder = ChooseAppFolder(
        options.appDir, QCoreApplication::applicationDirPath(), DefaultFallbackAppFolder());
    if (folder.folder.isEmpty()) {
        if (windowless)
            PrintTo(stderr, folder.problem + u'\n');
        else
            QMessageBox::critical(nullptr, QStringLiteral("Clipquill"), folder.problem);
        return 1;
    }
    // A second studio on the folder would record over the first one's take and empty its work
    // folder: it ends before touching anything there.
    StudioFolderLock lock(folder.folder);
    if (!windowless && !lock.tryLock()) {
        PrintTo(stderr, lock.problem() + u'\n');
        // Without a screen (offscreen) nobody could answer the box: stderr says it all.
        if (QGuiApplication::platformName() != QStringLiteral("offscreen"))
            QMessageBox::critical(nullptr, QStringLiteral("Clipquill"), lock.problem());
        return kFolderInUseExitCode;
    }
    WindowlessStartup startup = WindowlessStartup::run(
        folder.folder, XdgFolders::fromDesktop(),
        options.render.isEmpty() ? WindowlessStartup::Use::Studio : WindowlessStartup::Use::Render);
    if (!folder.problem.isEmpty())
        startup.problems.prepend(folder.problem);

    if (options.check)
        return runCheck(startup);
    if (!options.render.isEmpty()) {
        const int code = runRender(startup, options);
        return stopSignals.received() ? stopSignals.exitCode() : code;
    }
    frmClipquill window(std::move(startup));
    window.show();
    return app->exec();
}

} // namespace

int RunStudio(int argc, char** argv) {
    // A file that may grow no larger (a limit set with ulimit -f) then fails its write with EFBIG,
    // which the recorder and the render report as lack of space, where the signal would end the
    // studio, or a tool, without a word. The tools inherit the ignored signal.
    std::signal(SIGXFSZ, SIG_IGN);
    // Without HOME the desktop's folders would be looked for, and made, at the root.
    TakeHomeFromAccountWhenUnset();
    // The ffmpeg backend of Qt Multimedia plays the rendered MPEG-4 video; GStreamer may not.
    if (qEnvironmentVariableIsEmpty("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    const StudioOptions options = ParseStudioOptions(argumentsOf(argc, argv));
    if (options.help) {
        PrintTo(stdout, StudioUsage());
        return 0;
    }
    if (options.version) {
        PrintTo(stdout, StudioVersionText() + u'\n');
        return 0;
    }
    if (!options.error.isEmpty()) {
        PrintTo(stderr, options.error + u'\n' + StudioUsage());
        return 2;
    }
    return runStudio(options, argc, argv);
}

} // namespace cq
