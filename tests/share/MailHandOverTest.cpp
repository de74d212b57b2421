#include "share/MailHandOver.h"
#include "StubProgram.h"
#include "render/ToolRunner.h"
#include "share/HandOverFiles.h"
#include "support/TestAppFolder.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {
struct EmailerRun {
    RunResult result;
    QString errors;
};

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
    ToolRunner runner;

    const MailResult sent = SendMail(ClipMailMessage(clip, "5551234567@vzwpix.com"), runner);
    EXPECT_TRUE(sent.ok) << sent.message.toStdString();
    EXPECT_EQ(xdgEmail.arguments(), QStringList({"--utf8", "--subject", "Harrowfin", "--body",
                                                 "Check out this clip video attached...\r\n",
                                                 "--attach", clip, "5551234567@vzwpix.com"}));
    EXPECT_FALSE(QFile::exists(dir.path() + "/pwned"));

    // Without a recipient the user fills it in: no address is passed.
    ASSERT_TRUE(SendMail(ClipMailMessage(clip, ""), runner).ok);
    EXPECT_EQ(xdgEmail.arguments().size(), 7);
}

TEST(MailHandOver, NoMailClientOrNoXdgEmailIsAFailedLogOn) {
    QTemporaryDir dir;
    const QString clip = dir.path() + "/FinalMix.avi";
    test::WriteFile(clip, "video");
    ToolRunner runner;
    {
        test::StubProgram noClient("xdg-email", 3); // what xdg-email does without a client
        const MailResult sent = SendMail(ClipMailMessage(clip, ""), runner);
        EXPECT_FALSE(sent.ok);
        EXPECT_EQ(sent.message, "Failed to log onto local MAPI client");
    }
    {
        test::HiddenProgram absent("xdg-email");
        const MailResult sent = SendMail(ClipMailMessage(clip, ""), runner);
        EXPECT_FALSE(sent.ok);
        EXPECT_EQ(sent.message, "Failed to log onto local MAPI client");
    }
}

TEST(MailHandOver, MissingAttachmentIsNeverHandedOver) {
    test::StubProgram xdgEmail("xdg-email");
    ToolRunner runner;
    const MailResult sent = SendMail(ClipMailMessage("/no/such/FinalMix.avi", ""), runner);
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
    EXPECT_EQ(xdgEmail.arguments(), QStringList({"--utf8", "--subject", "Harrowfin", "--body",
                                                 EmailMessageText(), "--attach", clip}));
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
