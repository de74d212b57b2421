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

MailHandOver::MailHandOver(QObject* parent) : QObject(parent), m_runner(new ToolRunner(this)) {
    connect(m_runner, &ToolRunner::finished, this, &MailHandOver::onRunFinished);
}

bool MailHandOver::start(const MailMessage& message) {
    if (m_running)
        return false;
    m_running = true;
    MailResult refused;
    if (!QFileInfo(message.attachment).isFile()) {
        refused.message = QStringLiteral("The file \"%1\" does not exist, so there is nothing to "
                                         "attach.")
                              .arg(message.attachment);
        end(refused);
        return true;
    }
    const QString xdgEmail = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (xdgEmail.isEmpty()) {
        refused.message = MailLogOnFailedText();
        refused.detail = QStringLiteral("xdg-email is not installed (Debian package xdg-utils).");
        end(refused);
        return true;
    }
    // The mail client xdg-email opens holds the user's message: it stays when the studio goes.
    m_runner->startHandOver(xdgEmail, XdgEmailArguments(message));
    return true;
}

void MailHandOver::onRunFinished(const RunResult& run) {
    MailResult result;
    result.ok = run.ok() && run.exitCode == 0;
    if (!result.ok) {
        result.message = MailLogOnFailedText();
        result.detail = run.exitCode == 3
                            ? QStringLiteral("No e-mail program is set up on this computer.")
                            : run.errorText.trimmed();
    }
    end(result);
}

void MailHandOver::end(const MailResult& result) {
    // Never from inside start() or the process's own notification.
    QMetaObject::invokeMethod(
        this,
        [this, result] {
            m_running = false;
            emit finished(result);
        },
        Qt::QueuedConnection);
}

} // namespace cq
