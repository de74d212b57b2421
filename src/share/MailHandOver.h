#pragma once

#include <QObject>
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

struct RunResult;

// Hands one message at a time to the desktop's mail client through xdg-email (found on PATH).
// start() returns at once; finished() tells how it went, always from the event loop, also when
// the message could not even be handed over (no attachment, no xdg-email).
class MailHandOver : public QObject {
    Q_OBJECT
public:
    explicit MailHandOver(QObject* parent = nullptr);

    // False (and nothing happens) while an earlier message is still being handed over.
    bool start(const MailMessage& message);
    bool isRunning() const { return m_running; }

signals:
    void finished(const cq::MailResult& result);

private:
    void onRunFinished(const RunResult& run);
    void end(const MailResult& result);

    ToolRunner* m_runner;
    bool m_running = false;
};

} // namespace cq
