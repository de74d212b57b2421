#include "share/CompanionPrograms.h"

#include "platform/ToolRunner.h"

#include <QFileInfo>

namespace cq {

namespace {
bool IsProgram(const QString& fileSpec) {
    const QFileInfo info(fileSpec);
    return info.isFile() && info.isExecutable();
}
} // namespace

QString LocateEmailer(const QString& studioFolder, const QString& appFolder) {
    for (const QString& folder : {studioFolder, appFolder}) {
        const QString candidate = folder + QStringLiteral("/Emailer");
        if (!folder.isEmpty() && IsProgram(candidate))
            return candidate;
    }
    return {};
}

QStringList EmailerArguments(const QString& appFolder) {
    return {QStringLiteral("--app-dir"), appFolder};
}

QString FtpProgramFileSpec(const QString& appFolder) {
    return appFolder + QStringLiteral("/FTP");
}

bool FtpProgramAvailable(const QString& appFolder) {
    return IsProgram(FtpProgramFileSpec(appFolder));
}

QString FtpMissingMessage(const QString& appFolder) {
    return QStringLiteral("No FTP program is installed: to use one, place an executable file "
                          "named \"FTP\" (for example a link to FileZilla) in \"%1\".")
        .arg(appFolder);
}

qint64 StartCompanion(const QString& program, const QStringList& arguments,
                      const QString& workingFolder) {
    return ToolRunner::startDetached(program, arguments, workingFolder);
}

} // namespace cq
