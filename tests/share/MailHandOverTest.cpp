#include "share/MailHandOver.h"
#include "StubProgram.h"
#include "platform/ToolRunner.h"
#include "share/HandOverFiles.h"
#include "support/LiveProcesses.h"
#include "support/TestAppFolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <csignal>
#include <optional>

#include <gtest/gtest.h>

using namespace cq;

namespace {

// The state letter of /proc/PID/stat ('T' stopped, 'Z' ended), or 0 for a process that is gone.
char ProcessState(qint64 pid) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = stat.readAll();
    const qsizetype end = text.lastIndexOf(')'); // the name may hold blanks
    return end < 0 || end + 2 >= text.size() ? 0 : text.at(end + 2);
}

struct EmailerRun {
    RunResult result;
    QString errors;
};

// Hands the message over and waits for the answer, which never comes inside start().
MailResult Send(const MailMessage& message) {
    MailHandOver handOver;
    std::optional<MailResult> answer;
    QObject::connect(&handOver, &MailHandOver::finished,
                     [&](const MailResult& result) { answer = result; });
    EXPECT_TRUE(handOver.start(message));
    EXPECT_FALSE(answer.has_value());
    EXPECT_FALSE(handOver.start(message)) << "one message at a time";
    EXPECT_TRUE(QTest::qWaitFor([&] { return answer.has_value(); }, 20000));
    return answer.value_or(MailResult{});
}

EmailerRun RunEmailer(const QString& appFolder) {
    ToolRunner runner;
    EmailerRun run;
    QObject::connect(&runner, &ToolRunner::errorLine,
                     [&run](const QString& line) { run.errors += line + '\n'; });
    run.result = runner.runProgram(CQ_EMAILER, {"--app-dir", appFolder, "--quiet"});
    return run;
}
} // namespace

TEST(MailHandOver, ClipGoesToXdgEmailWithSubjectBodyAttachmentAndRecipient) {
    QTemporaryDir dir;
    const QString clip = dir.path() + "/it's $(touch pwned) \"clip\".MP4";
    test::WriteFile(clip, "video");
    test::StubProgram xdgEmail("xdg-email");
    const MailResult sent = Send(ClipMailMessage(clip, "5551234567@vzwpix.com"));
    EXPECT_TRUE(sent.ok) << sent.message.toStdString();
    // What the mail client makes of the arguments is checked with the real xdg-email below.
    const QStringList args = xdgEmail.arguments();
    EXPECT_EQ(args.value(args.indexOf("--attach") + 1), clip);
    EXPECT_EQ(args.last(), "5551234567@vzwpix.com");
    EXPECT_FALSE(QFile::exists(dir.path() + "/pwned"));

    // Without a recipient the user fills it in: no address is passed.
    ASSERT_TRUE(Send(ClipMailMessage(clip, "")).ok);
    EXPECT_EQ(xdgEmail.arguments().last(), clip);
}

TEST(MailHandOver, NoMailClientOrNoXdgEmailIsAFailedLogOn) {
    QTemporaryDir dir;
    const QString clip = dir.path() + "/FinalMix.avi";
    test::WriteFile(clip, "video");
    {
        test::StubProgram noClient("xdg-email", 3); // what xdg-email does without a client
        const MailResult sent = Send(ClipMailMessage(clip, ""));
        EXPECT_FALSE(sent.ok);
        EXPECT_EQ(sent.message, "Failed to log onto local MAPI client");
    }
    {
        test::HiddenProgram absent("xdg-email");
        const MailResult sent = Send(ClipMailMessage(clip, ""));
        EXPECT_FALSE(sent.ok);
        EXPECT_EQ(sent.message, "Failed to log onto local MAPI client");
    }
}

TEST(MailHandOver, MissingAttachmentIsNeverHandedOver) {
    test::StubProgram xdgEmail("xdg-email");
    const MailResult sent = Send(ClipMailMessage("/no/such/FinalMix.avi", ""));
    EXPECT_FALSE(sent.ok);
    EXPECT_TRUE(sent.message.contains("/no/such/FinalMix.avi"));
    EXPECT_FALSE(xdgEmail.ran());
}

TEST(Emailer, ReadsTheHandOverFilesBackIntoANewMessage) {
    test::TestAppFolder app(false);
    const QString clip = app.file("ClipquillTempFiles/Zoë's FinalMix.avi");
    test::WriteFile(clip, "video");
    ASSERT_TRUE(WriteEmailHandOver(app.file("SystemTemp"), {EmailMessageText(), clip}));
    test::StubProgram xdgEmail("xdg-email");

    const EmailerRun run = RunEmailer(app.path());
    EXPECT_TRUE(run.result.ok()) << run.errors.toStdString();
    const QStringList args = xdgEmail.arguments();
    EXPECT_EQ(args.value(args.indexOf("--body") + 1), EmailMessageText());
    EXPECT_EQ(args.value(args.indexOf("--attach") + 1), clip);
}

TEST(Emailer, SaysSoWhenThereIsNothingToSendOrNoMailClient) {
    test::TestAppFolder app(false);
    {
        test::StubProgram xdgEmail("xdg-email");
        const EmailerRun run = RunEmailer(app.path());
        EXPECT_EQ(run.result.exitCode, 1);
        EXPECT_TRUE(run.errors.contains("no clip to send")) << run.errors.toStdString();
        EXPECT_FALSE(xdgEmail.ran());
    }
    const QString clip = app.file("ClipquillTempFiles/FinalMix.avi");
    test::WriteFile(clip, "video");
    ASSERT_TRUE(WriteEmailHandOver(app.file("SystemTemp"), {EmailMessageText(), clip}));
    test::StubProgram noClient("xdg-email", 3);
    const EmailerRun run = RunEmailer(app.path());
    EXPECT_EQ(run.result.exitCode, 1);
    EXPECT_TRUE(run.errors.contains("No e-mail program")) << run.errors.toStdString();
}

// The real xdg-email with a stand-in mail client registered for mailto: the way a desktop has
// one. It proves that xdg-email takes the arguments as given.
TEST(MailHandOver, RealXdgEmailPassesTheMessageToTheDesktopsMailClient) {
    if (QStandardPaths::findExecutable("xdg-email").isEmpty())
        GTEST_SKIP() << "xdg-utils is not installed";
    QTemporaryDir dir;
    const QString received = dir.path() + "/received.txt";
    test::WriteFile(dir.path() + "/client.sh",
                    ("#!/bin/sh\nprintf '%s' \"$1\" > '" + received + ".part'\nmv '" + received +
                     ".part' '" + received + "'\n")
                        .toUtf8());
    QFile::setPermissions(dir.path() + "/client.sh", QFile::ReadOwner | QFile::ExeOwner);
    test::WriteFile(dir.path() + "/data/applications/stubmail.desktop",
                    ("[Desktop Entry]\nType=Application\nName=Stub Mail\nExec=" + dir.path() +
                     "/client.sh %u\nMimeType=x-scheme-handler/mailto;\n")
                        .toUtf8());
    test::WriteFile(dir.path() + "/config/mimeapps.list",
                    "[Default Applications]\nx-scheme-handler/mailto=stubmail.desktop\n");
    const QString clip = dir.path() + "/Zoë's clip.3GP";
    test::WriteFile(clip, "video");

    const QStringList names{"DISPLAY", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CURRENT_DESKTOP"};
    QList<QByteArray> saved;
    for (const QString& name : names)
        saved << qgetenv(name.toLatin1());
    qputenv("DISPLAY", ":99"); // xdg-email wants a desktop session
    qputenv("XDG_DATA_HOME", (dir.path() + "/data").toUtf8());
    qputenv("XDG_CONFIG_HOME", (dir.path() + "/config").toUtf8());
    qunsetenv("XDG_CURRENT_DESKTOP");
    const MailResult sent = Send(ClipMailMessage(clip, "5551234567@vzwpix.com"));
    for (int i = 0; i < names.size(); ++i)
        saved.at(i).isNull() ? qunsetenv(names.at(i).toLatin1())
                             : qputenv(names.at(i).toLatin1(), saved.at(i));

    ASSERT_TRUE(sent.ok) << sent.detail.toStdString();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(received); }, 20000));
    QFile file(received);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString url = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(url.startsWith("mailto:5551234567@vzwpix.com?subject=Harrowfin&body=Check%20out"))
        << url.toStdString();
    const qsizetype attach = url.indexOf("&attach=");
    ASSERT_GE(attach, 0) << url.toStdString();
    EXPECT_EQ(QUrl::fromPercentEncoding(url.mid(attach + 8).toUtf8()), clip);
}

TEST(MailHandOver, TheMailClientItOpensStaysWhenTheHandOverGoes) {
    QTemporaryDir dir;
    const QString clip = dir.path() + "/FinalMix.avi";
    test::WriteFile(clip, "video");
    // An xdg-email that keeps a freshly started mail client in the foreground, as xdg-email
    // does for some clients: the user's unsent message lives in that client.
    const QString marker =
        QStringLiteral("stand-in-mail-client-%1").arg(QCoreApplication::applicationPid());
    test::WriteFile(dir.path() + "/xdg-email",
                    QStringLiteral("#!/bin/sh\nsh -c 'sleep 120' %1\n").arg(marker).toUtf8());
    QFile::setPermissions(dir.path() + "/xdg-email",
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", dir.path().toUtf8() + ':' + oldPath);
    {
        MailHandOver handOver;
        ASSERT_TRUE(handOver.start(ClipMailMessage(clip, "")));
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return !test::ProcessesMentioning(marker.toUtf8()).isEmpty(); }, 5000));
    } // the window that asked goes, or the studio closes
    qputenv("PATH", oldPath);
    // Any kill the hand-over sent came before this stop: a client that stops outlived it.
    const QList<qint64> clients = test::ProcessesMentioning(marker.toUtf8());
    ASSERT_FALSE(clients.isEmpty()) << "the mail client went with the hand-over";
    for (qint64 pid : clients)
        ::kill(pid_t(pid), SIGSTOP);
    for (qint64 pid : clients) {
        // Running or asleep until the stop (or a kill) takes it.
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return !QByteArray("RSD").contains(ProcessState(pid)); }, 10000));
        EXPECT_EQ(ProcessState(pid), 'T') << "the mail client went with the hand-over";
    }
    for (qint64 pid : clients)
        ::kill(pid_t(pid), SIGKILL);
}
