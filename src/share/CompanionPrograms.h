#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// The help page with installation and usage instructions, laid out with the program's media.
inline QString SupportPageFileSpec(const QString& appFolder) {
    return appFolder + QStringLiteral("/SystemMedia/Help.html");
}

// The Emailer companion: in the studio's own folder (where the build and the installation put
// it), else in the application folder. Empty when it is in neither.
QString LocateEmailer(const QString& studioFolder, const QString& appFolder);
QStringList EmailerArguments(const QString& appFolder);

// The user's FTP program: an executable named FTP in the application folder.
QString FtpProgramFileSpec(const QString& appFolder);
bool FtpProgramAvailable(const QString& appFolder);
QString FtpMissingMessage(const QString& appFolder);

// Starts a program with its own arguments (no shell) and does not wait for it; it outlives the
// studio. Returns the process id, 0 when it could not start.
qint64 StartCompanion(const QString& program, const QStringList& arguments,
                      const QString& workingFolder = QString());

} // namespace cq
