#include "app/CommandLine.h"

#include "app/CommandLineRender.h"
#include "app/InstallationCheck.h"
#include "app/Startup.h"
#include "app/widgets/frmClipquill.h"
#include "platform/TerminationSignals.h"
#include "studio/AppFolder.h"

#include "Version.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>
#include <QTextStream>

#include <cstdio>

namespace cq {

StudioOptions ParseStudioOptions(const QStringList& arguments) {
    StudioOptions o;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        auto value = [&](QString& target) {
            if (i + 1 >= arguments.size()) {
                o.error = QStringLiteral("%1 needs a value").arg(a);
                return;
            }
            target = arguments[++i];
        };
        if (a == u"--app-dir") {
            value(o.appDir);
            // An empty name would quietly mean the installation's own folder.
            if (o.error.isEmpty() && o.appDir.trimmed().isEmpty())
                o.error = QStringLiteral("--app-dir needs the name of a folder; \"%1\" names none")
                              .arg(o.appDir);
        } else if (a == u"--check")
            o.check = true;
        else if (a == u"--render")
            value(o.render);
        else if (a == u"--voice")
            value(o.voice);
        else if (a == u"--size")
            value(o.size);
        else if (a == u"--output")
            value(o.output);
        else if (a == u"--video-sound")
            o.videoSound = true;
        else if (a == u"--help" || a == u"-h")
            o.help = true;
        else
            o.error = QStringLiteral("unknown argument \"%1\"").arg(a);
        if (!o.error.isEmpty())
            break;
    }
    return o;
}

QString StudioUsage() {
    return QStringLiteral(
        "Usage: clipquill [--app-dir DIR] [--check]\n"
        "       clipquill [--app-dir DIR] --render TIMELINE [--voice WAV] [--size WxH] "
        "[--output FILE] [--video-sound]\n"
        "  --app-dir DIR  use DIR as the application folder (filled from the installation)\n"
        "  --check        report paths, settings and which tools work, then exit\n"
        "  --video-sound  mix the videos' own sound under the voice\n");
}

namespace {

void printTo(FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

QStringList argumentsOf(int argc, char** argv) {
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

int runCheck(const WindowlessStartup& startup) {
    const InstallationCheck check = InstallationCheck::run(startup.paths);
    printTo(stdout, InstallationCheck::report(startup, check));
    if (check.essentialsUsable())
        return 0;
    printTo(stderr, QStringLiteral("Clipquill cannot render without %1: see the lines above.\n")
                        .arg(check.missingEssentials().join(QStringLiteral(", "))));
    return 1;
}

} // namespace

int RunStudio(int argc, char** argv) {
    // The ffmpeg backend of Qt Multimedia plays the rendered MPEG-4 video; GStreamer may not.
    if (qEnvironmentVariableIsEmpty("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    const StudioOptions options = ParseStudioOptions(argumentsOf(argc, argv));
    if (options.help) {
        printTo(stdout, StudioUsage());
        return 0;
    }
    if (!options.error.isEmpty()) {
        printTo(stderr, options.error + u'\n' + StudioUsage());
        return 2;
    }

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
            printTo(stderr, folder.problem + u'\n');
        else
            QMessageBox::critical(nullptr, QStringLiteral("Clipquill"), folder.problem);
        return 1;
    }
    WindowlessStartup startup = WindowlessStartup::run(folder.folder, XdgFolders::fromDesktop());
    if (!folder.problem.isEmpty())
        startup.problems.prepend(folder.problem);

    if (options.check)
        return runCheck(startup);
    if (!options.render.isEmpty()) {
        CommandLineRenderOptions render{options.render, options.voice, options.size,
                                        options.output};
        StudioSettings studio;
        studio.keepVideoSound = options.videoSound;
        const int code = RunCommandLineRender(startup.paths, studio, render, stdout, stderr);
        return stopSignals.received() ? stopSignals.exitCode() : code;
    }
    frmClipquill window(std::move(startup));
    window.show();
    return app->exec();
}

} // namespace cq
