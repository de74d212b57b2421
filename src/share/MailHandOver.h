#pragma once

#include <QString>
#include <QStringList>

namespace cq {

class ToolRunner;

// A new message for the user's mail client, which shows it for the user to send.
struct MailMessage {
    QString subject;
    QString body;
    QString attachment; // full path; must exist
    QString recipient;  // may be empty: the user fills it in
};

// The message the conversion window hands over: subject "Harrowfin", the clip attached.
MailMessage ClipMailMessage(const QString& attachment, const QString& recipient);

// xdg-email's arguments: --utf8 --subject S --body B --attach FILE [recipient].
QStringList XdgEmailArguments(const MailMessage& message);

struct MailResult {
    bool ok = false;
    QString message; // for the user when not ok
    QString detail;  // what xdg-email said, if anything
};

// The words the user sees when no mail client could take the message.
QString MailLogOnFailedText();

// Hands the message to the desktop's mail client through xdg-email (found on PATH) and waits,
// without blocking the event loop, until it has been handed over.
MailResult SendMail(const MailMessage& message, ToolRunner& runner);

} // namespace cq
