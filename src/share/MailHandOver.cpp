#include "share/MailHandOver.h"

#include "platform/ToolRunner.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace cq {

MailMessage ClipMailMessage(const QString& attachment, const QString& recipient) {
    return {QStringLiteral("Harrowfin"),
            QStringLiteral("Check out this clip video attached...\r\n"), attachment, recipient};
}

QStringList XdgEmailArguments(const MailMessage& message) {
    QStringList args{QStringLiteral("--utf8"),
                     QStringLiteral("--subject"),
                     message.subject,
                     QStringLiteral("--body"),
                     message.body,
                     QStringLiteral("--attach"),
                     QFileInfo(message.attachment).absoluteFilePath()};
    // An address never starts with "-", so it cannot be read as an option.
    const QString recipient = message.recipient.trimmed();
    if (!recipient.isEmpty() && !recipient.startsWith(u'-'))
        args << recipient;
    return args;
}

QString MailLogOnFailedText() {
    return QStringLiteral("Failed to log onto local MAPI client");
}

MailResult SendMail(const MailMessage& message, ToolRunner& runner) {
    MailResult result;
    if (!QFileInfo(message.attachment).isFile()) {
        result.message = QStringLiteral("The file \"%1\" does not exist, so there is nothing to "
                                        "attach.")
                             .arg(message.attachment);
        return result;
    }
    const QString xdgEmail = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (xdgEmail.isEmpty()) {
        result.message = MailLogOnFailedText();
        result.detail = QStringLiteral("xdg-email is not installed (Debian package xdg-utils).");
        return result;
    }
    const RunResult run = runner.runProgram(xdgEmail, XdgEmailArguments(message));
    result.ok = run.ok() && run.exitCode == 0;
    if (!result.ok) {
        result.message = MailLogOnFailedText();
        result.detail = run.exitCode == 3
                            ? QStringLiteral("No e-mail program is set up on this computer.")
                            : run.errorText.trimmed();
    }
    return result;
}

} // namespace cq
