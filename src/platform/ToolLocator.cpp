#include "platform/ToolLocator.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace cq {

QString ToolLocation::missingMessage() const {
    return QStringLiteral("%1 is not installed. Install the Debian package \"%2\" "
                          "(sudo apt-get install %2).")
        .arg(name, package);
}

ToolLocation LocateTool(const QString& applicationFileSpec, const QString& name,
                        const QString& package) {
    ToolLocation tool{QString(), name, package};
    const QFileInfo own(applicationFileSpec);
    if (own.exists() && own.isExecutable() && own.isFile()) // a dangling link is not a tool
        tool.path = applicationFileSpec;
    else
        tool.path = QStandardPaths::findExecutable(name);
    return tool;
}

ToolLocation LocateFfmpeg(const QString& gstrFFMPEGFileSpec) {
    return LocateTool(gstrFFMPEGFileSpec, QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg"));
}

ToolLocation LocateFfprobeBesideFfmpeg(const QString& gstrFFMPEGFileSpec) {
    return LocateTool(QFileInfo(gstrFFMPEGFileSpec).path() + QStringLiteral("/ffprobe"),
                      QStringLiteral("ffprobe"), QStringLiteral("ffmpeg"));
}

ToolLocation LocateConvert(const QString& gstrImageMagickFileSpec) {
    return LocateTool(gstrImageMagickFileSpec, QStringLiteral("convert"),
                      QStringLiteral("imagemagick"));
}

} // namespace cq
