#include "app/Startup.h"

#include "platform/Folders.h"
#include "platform/TextFiles.h"
#include "platform/ToolRunner.h"
#include "text/TextListFile.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace cq {

XdgFolders XdgFolders::fromDesktop() {
    return {QStandardPaths::writableLocation(QStandardPaths::MoviesLocation),
            QStandardPaths::writableLocation(QStandardPaths::MusicLocation),
            QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)};
}

void WindowlessStartup::removeLeftToolFolders(const AppPaths& paths) {
    // The temporary folders of tool runs that a killed studio could not remove: the picture
    // tool's in SystemMediaGen, the render's in the work folder and its Render parts, a
    // conversion's next to its output.
    QStringList workSpaces{QFileInfo(paths.gstrImageMagickScriptFileSpec).absolutePath(),
                           paths.gstrTempFilesDirectory};
    const QDir work(paths.gstrTempFilesDirectory);
    for (const QString& part : work.entryList({QStringLiteral("Render*")}, QDir::Dirs))
        workSpaces << work.filePath(part);
    for (const QString& workSpace : std::as_const(workSpaces))
        ToolRunner::removeLeftTemporaryFolders(workSpace);
}

WindowlessStartup WindowlessStartup::run(const QString& appFolder, const XdgFolders& xdg, Use use) {
    WindowlessStartup s;
    s.paths = AppPaths::forFolder(appFolder);
    auto require = [&s, use](const QString& folder) {
        if (use == Use::Studio && !MakeFolderPath(folder))
            s.problems << QStringLiteral("The folder \"%1\" could not be created.").arg(folder);
    };
    require(s.paths.tempDirectory);
    require(s.paths.gstrTempFilesDirectory);
    require(s.paths.gstrSmallPicsDirectory);
    require(s.paths.gstrSystemTempDirectory);
    removeLeftToolFolders(s.paths);

    s.problems << s.settings.loadAtStartup(s.paths.gstrHarrowfinSetupFileSpec,
                                           s.paths.gstrClipquillSetupFileSpec, xdg.videos,
                                           xdg.music, xdg.pictures);
    require(s.settings.gstrMyVideoProjectsDirectory);

    const QString textListProblem = NotARegularFileProblem(s.paths.textListFileSpec);
    if (!textListProblem.isEmpty()) {
        // Whatever stands there is left alone; the list starts with the default texts.
        s.problems << textListProblem;
        s.textList = DefaultTextList();
    } else if (QFileInfo::exists(s.paths.textListFileSpec)) {
        s.textList = LoadTextList(s.paths.textListFileSpec);
    } else {
        s.textList = DefaultTextList();
        if (!SaveTextList(s.textList, s.paths.textListFileSpec))
            s.problems << QStringLiteral("The text list \"%1\" could not be written.")
                              .arg(s.paths.textListFileSpec);
    }
    return s;
}

} // namespace cq
