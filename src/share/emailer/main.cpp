// Emailer: the studio's mail companion. It reads the message and the attachment that the studio
// left in SystemTemp and opens a new message in the user's mail client.

#include "share/HandOverFiles.h"
#include "share/MailHandOver.h"
#include "studio/AppFolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QTextStream>

namespace {

QString ApplicationFolder(const QString& requested) {
    if (!requested.isEmpty())
        return requested;
    const QString own = QCoreApplication::applicationDirPath();
    return cq::IsWritableFolder(own) ? own : cq::DefaultFallbackAppFolder();
}

int Fail(const QString& text, const QString& detail, bool quiet) {
    QTextStream(stderr) << text << (detail.isEmpty() ? QString() : u'\n' + detail) << '\n';
    if (!quiet) {
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Emailer"), text);
        if (!detail.isEmpty())
            box.setInformativeText(detail);
        box.exec();
    }
    return 1;
}

int ReportUnsent(const cq::MailResult& sent, bool quiet) {
    // No mail client took the message: say so plainly rather than in MAPI's words.
    const bool noClient = sent.message == cq::MailLogOnFailedText();
    return Fail(noClient ? QStringLiteral("No e-mail program could open the message. Set up an "
                                          "e-mail program (for example Thunderbird) as your "
                                          "desktop's mail client, then try again.")
                         : sent.message,
                sent.detail, quiet);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Emailer"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Opens a new message with the clip that Clipquill handed over."));
    parser.addHelpOption();
    const QCommandLineOption appDir(QStringLiteral("app-dir"),
                                    QStringLiteral("The studio's application folder."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption quiet(QStringLiteral("quiet"),
                                   QStringLiteral("Report problems on stderr only, no dialog."));
    parser.addOption(appDir);
    parser.addOption(quiet);
    parser.process(app);
    const bool noDialog = parser.isSet(quiet);

    const QString systemTemp =
        ApplicationFolder(parser.value(appDir)) + QStringLiteral("/SystemTemp");
    const cq::EmailHandOverReadResult read = cq::ReadEmailHandOver(systemTemp);
    if (!read.ok())
        return Fail(QStringLiteral("There is no clip to send."), read.error, noDialog);

    cq::MailMessage message{QStringLiteral("Harrowfin"), read.handOver.messageText,
                            read.handOver.attachmentPath, QString()};
    cq::MailHandOver handOver;
    QObject::connect(&handOver, &cq::MailHandOver::finished, &app,
                     [noDialog](const cq::MailResult& sent) {
                         QCoreApplication::exit(sent.ok ? 0 : ReportUnsent(sent, noDialog));
                     });
    handOver.start(message);
    return QApplication::exec();
}
