#include "ModalResponder.h"
#include "StubProgram.h"
#include "platform/TextFiles.h"
#include "share/widgets/SharePanel.h"
#include "share/widgets/frmConvertAndEmail.h"
#include "share/widgets/frmSetDir.h"
#include "studio/AppPaths.h"
#include "studio/DirectorySettings.h"
#include "support/LiveProcesses.h"
#include "support/TestAppFolder.h"
#include "support/WidgetFinding.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

using namespace cq;
using test::Child;
using test::ModalResponder;

namespace {

bool MakeClip(const QString& file, int seconds = 1) {
    QDir().mkpath(QFileInfo(file).path());
    const QString duration = QString::number(seconds);
    return test::MakeMedia({"-f", "lavfi", "-i",
                            "testsrc=size=160x120:rate=15:duration=" + duration, "-f", "lavfi",
                            "-i", "sine=duration=" + duration, "-c:v", "mpeg4", "-c:a",
                            "libmp3lame", "-shortest", file});
}

// Waits until the responder has seen the given number of modal windows.
bool WaitForTexts(const ModalResponder& responder, int count, int timeoutMs = 60000) {
    return QTest::qWaitFor([&] { return responder.texts.size() >= count; }, timeoutMs);
}

// What the modal windows opened by clicking the button said; each is closed as if by Escape.
QStringList SaidOnClick(QWidget* window, const char* button) {
    ModalResponder responder;
    Child<QPushButton>(window, button)->click();
    return responder.texts;
}

bool WaitForFile(const QString& path) {
    return QTest::qWaitFor([&] { return QFile::exists(path); }, 20000);
}

} // namespace

TEST(ConvertAndEmailWindow, ListsTheFormatsPresetsAndTheCarriersOfTheFileBeforeTheBuiltInOnes) {
    test::TestAppFolder app(false);
    test::WriteFile(app.file("System/MMSServerList.txt"), "Acme Mobile;mms.acme.example\r\n");
    frmConvertAndEmail w(AppPaths::forFolder(app.path()));
    EXPECT_EQ(Child<QListWidget>(&w, "lstConvertToFormat")->currentItem()->text(), "AVI");
    auto* carriers = Child<QListWidget>(&w, "lstCellCarrier");
    ASSERT_GT(carriers->count(), 1);
    EXPECT_EQ(carriers->item(0)->text(), "Acme Mobile");
    EXPECT_FALSE(Child<QProgressBar>(&w, "prgConversion")->isVisibleTo(&w));
}

TEST(ConvertAndEmailWindow, PresetsSetSizeAndFormatAndSoundOnlyChoicesClearTheSize) {
    test::TestAppFolder app(false);
    frmConvertAndEmail w(AppPaths::forFolder(app.path()));
    auto* formats = Child<QListWidget>(&w, "lstConvertToFormat");
    w.cboPresets_Click(4); // Regular Cellphone (3GP format)
    EXPECT_TRUE(Child<QRadioButton>(&w, "optScreenRes_1")->isChecked());
    EXPECT_EQ(w.conversionSettings().outputFormat, "3GP");
    EXPECT_EQ(w.conversionSettings().frameSize, "176x144");

    Child<QRadioButton>(&w, "optScreenRes_5")->setChecked(true);
    Child<QLineEdit>(&w, "txtScreenRes")->setText("640x480");
    EXPECT_EQ(w.conversionSettings().frameSize, "640x480");
    w.cboPresets_Click(10); // Ringtones (MP3)
    EXPECT_EQ(w.conversionSettings().outputFormat, "MP3");
    EXPECT_TRUE(w.conversionSettings().frameSize.isEmpty());
    EXPECT_TRUE(Child<QLineEdit>(&w, "txtScreenRes")->text().isEmpty());
    for (QRadioButton* option : w.findChildren<QRadioButton*>())
        EXPECT_FALSE(option->isChecked()) << option->objectName().toStdString();

    w.cboPresets_Click(0); // Apple Iphone 3G
    EXPECT_EQ(w.conversionSettings().frameSize, "480x320");
    formats->setCurrentRow(9); // M4A
    EXPECT_TRUE(w.conversionSettings().frameSize.isEmpty());
    formats->setCurrentRow(2); // other formats leave the size alone
    Child<QRadioButton>(&w, "optScreenRes_0")->setChecked(true);
    formats->setCurrentRow(3);
    EXPECT_EQ(w.conversionSettings().frameSize, "160x120");
}

TEST(ConvertAndEmailWindow, EmailNeedsACarrierForAPhoneAndAddressesItsGateway) {
    test::TestAppFolder app(false);
    const AppPaths paths = AppPaths::forFolder(app.path());
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, "a rendered clip");
    test::StubProgram xdgEmail("xdg-email");
    frmConvertAndEmail w(paths);
    Child<QLineEdit>(&w, "txtPhoneNumber")->setText("(555) 123-4567");
    EXPECT_EQ(SaidOnClick(&w, "cmdEmail"), QStringList{"Select the Recipient's Cell Carrier."});
    EXPECT_FALSE(xdgEmail.ran());
    auto* carriers = Child<QListWidget>(&w, "lstCellCarrier");
    carriers->setCurrentItem(carriers->findItems("Verizon Wireless", Qt::MatchExactly).first());
    ModalResponder responder;
    Child<QPushButton>(&w, "cmdEmail")->click();
    EXPECT_TRUE(w.isBusy()); // the hand-over runs on its own; the window waits for nothing
    EXPECT_FALSE(Child<QPushButton>(&w, "cmdEmail")->isEnabled());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !w.isBusy(); }, 20000));
    EXPECT_TRUE(Child<QPushButton>(&w, "cmdEmail")->isEnabled());
    EXPECT_TRUE(responder.texts.isEmpty()) << responder.texts.join('|').toStdString();
    const QStringList args = xdgEmail.arguments();
    ASSERT_FALSE(args.isEmpty());
    EXPECT_EQ(args.last(), "5551234567@vzwpix.com");
    EXPECT_EQ(args.at(args.indexOf("--attach") + 1), paths.gstrFinalMixAVIFileSpec);
}

TEST(ConvertAndEmailWindow, ConvertOnlyReportsTheConvertedFileOrTheFailure) {
    test::TestAppFolder app;
    const AppPaths paths = AppPaths::forFolder(app.path());
    frmConvertAndEmail w(paths);
    w.cboPresets_Click(6); // Regular Cellphone (MP4 format)
    const QStringList noClip = SaidOnClick(&w, "cmdConvertOnly");
    ASSERT_EQ(noClip.size(), 1);
    EXPECT_TRUE(noClip.first().startsWith("There is no rendered clip yet"));
    ASSERT_TRUE(MakeClip(paths.gstrFinalMixAVIFileSpec));
    const QString output = app.file("ClipquillTempFiles/FinalMix.MP4");
    {
        ModalResponder responder;
        QList<int> shownProgress;
        QObject watcher;
        QObject::connect(Child<QProgressBar>(&w, "prgConversion"), &QProgressBar::valueChanged,
                         &watcher, [&](int value) { shownProgress << value; });
        Child<QPushButton>(&w, "cmdConvertOnly")->click();
        // The click has returned while ffmpeg runs: progress shows, nothing can start twice.
        EXPECT_TRUE(w.isConverting());
        EXPECT_TRUE(Child<QProgressBar>(&w, "prgConversion")->isVisibleTo(&w));
        EXPECT_TRUE(Child<QPushButton>(&w, "cmdCancel")->isVisibleTo(&w));
        EXPECT_FALSE(Child<QPushButton>(&w, "cmdConvertOnly")->isEnabled());
        EXPECT_FALSE(Child<QPushButton>(&w, "cmdEmail")->isEnabled());
        EXPECT_TRUE(responder.texts.isEmpty());
        ASSERT_TRUE(WaitForTexts(responder, 1));
        EXPECT_EQ(responder.texts,
                  QStringList{"Successful. \r\n\r\nFile was converted and saved to " + output});
        EXPECT_TRUE(QFile::exists(output));
        EXPECT_TRUE(shownProgress.contains(100));
        EXPECT_FALSE(w.isConverting());
        EXPECT_TRUE(Child<QPushButton>(&w, "cmdConvertOnly")->isEnabled());
    }
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, "not a video at all");
    ModalResponder responder;
    Child<QPushButton>(&w, "cmdConvertOnly")->click();
    ASSERT_TRUE(WaitForTexts(responder, 1));
    EXPECT_EQ(responder.texts, QStringList{"File Not Found. An error must have happened during "
                                           "the conversion process."});
    EXPECT_FALSE(QFile::exists(output)); // the earlier result does not pass for this one
    EXPECT_FALSE(Child<QProgressBar>(&w, "prgConversion")->isVisibleTo(&w));
}

TEST(ConvertAndEmailWindow, CancelStopsFfmpegAndLeavesNoUnfinishedFile) {
    test::TestAppFolder app;
    const AppPaths paths = AppPaths::forFolder(app.path());
    // Five minutes of clip: the conversion is still running when Cancel comes.
    ASSERT_TRUE(MakeClip(paths.gstrFinalMixAVIFileSpec, 300));
    frmConvertAndEmail w(paths);
    w.cboPresets_Click(0); // Apple Iphone 3G: 480x320 MP4
    const QString output = app.file("ClipquillTempFiles/FinalMix.MP4");
    auto* progress = Child<QProgressBar>(&w, "prgConversion");
    ModalResponder responder;
    Child<QPushButton>(&w, "cmdConvertOnly")->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return progress->value() > 0; }, 60000));
    EXPECT_LT(progress->value(), 100);
    EXPECT_TRUE(QFile::exists(output));
    Child<QPushButton>(&w, "cmdCancel")->click();
    ASSERT_TRUE(WaitForTexts(responder, 1));
    EXPECT_EQ(responder.texts, QStringList{"The conversion was cancelled."});
    EXPECT_FALSE(QFile::exists(output));
    EXPECT_EQ(test::ProcessesMentioning(output.toUtf8(), QCoreApplication::applicationPid()),
              QList<qint64>());
    EXPECT_FALSE(w.isConverting());
    EXPECT_FALSE(progress->isVisibleTo(&w));
    EXPECT_TRUE(Child<QPushButton>(&w, "cmdConvertOnly")->isEnabled());
}

TEST(SetDirWindow, NewFolderOkAndCancel) {
    QTemporaryDir dir;
    {
        frmSetDir chooser(dir.path() + "/");
        EXPECT_EQ(chooser.path(), dir.path());
        EXPECT_TRUE(chooser.makeNewFolder("  My Clips "));
        EXPECT_EQ(chooser.path(), dir.path() + "/My Clips");
        EXPECT_FALSE(chooser.makeNewFolder("   "));
        Child<QPushButton>(&chooser, "cmdOK")->click();
        EXPECT_FALSE(chooser.cancelled());
        EXPECT_EQ(chooser.chosenFolder(), dir.path() + "/My Clips");
    }
    {
        frmSetDir chooser("/");
        Child<QPushButton>(&chooser, "cmdOK")->click();
        EXPECT_EQ(chooser.chosenFolder(), "/");
    }
    frmSetDir chooser(dir.path());
    Child<QPushButton>(&chooser, "cmdCancel")->click();
    EXPECT_TRUE(chooser.cancelled());
}

TEST(SharePanel, ButtonsWithoutARenderedClipSaySoAndSendNothing) {
    test::TestAppFolder app(false);
    DirectorySettings settings;
    SharePanel panel(AppPaths::forFolder(app.path()), settings);
    for (const char* name : {"cmdEmail", "cmdConvert"}) {
        const QStringList said = SaidOnClick(&panel, name);
        ASSERT_EQ(said.size(), 1) << name;
        EXPECT_TRUE(said.first().startsWith("There is no rendered clip yet")) << name;
    }
    EXPECT_FALSE(QFile::exists(app.file("SystemTemp/EmailAttachmentList.txt")));
}

TEST(SharePanel, EmailHandsTheClipToTheEmailerCompanion) {
    test::TestAppFolder app(false);
    // An application folder whose name would run commands if a shell ever saw it unquoted.
    const QString folder = app.file("it's $(touch pwned) \"app\"; -x");
    ASSERT_TRUE(QDir().mkpath(folder));
    const AppPaths paths = AppPaths::forFolder(folder);
    ASSERT_TRUE(QFile::copy(CQ_EMAILER, folder + "/Emailer"));
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, "a rendered clip");
    test::StubProgram xdgEmail("xdg-email");
    DirectorySettings settings;
    SharePanel panel(paths, settings);
    panel.setEventCountProvider([] { return 2; });
    ModalResponder responder;
    Child<QPushButton>(&panel, "cmdEmail")->click();
    EXPECT_TRUE(responder.texts.isEmpty()) << responder.texts.join('|').toStdString();
    ASSERT_TRUE(WaitForFile(xdgEmail.log()));
    const QStringList args = xdgEmail.arguments();
    ASSERT_FALSE(args.isEmpty());
    EXPECT_EQ(args.last(), paths.gstrFinalMixAVIFileSpec);
    EXPECT_FALSE(QFile::exists(app.file("pwned")));
    EXPECT_FALSE(QFile::exists(QDir::currentPath() + "/pwned"));
}

TEST(SharePanel, FtpWritesItsStartFolderThenStartsTheProgramOrExplainsHowToAddOne) {
    test::TestAppFolder app(false);
    const AppPaths paths = AppPaths::forFolder(app.path());
    DirectorySettings settings;
    SharePanel panel(paths, settings);
    const QStringList noProgram = SaidOnClick(&panel, "cmdFTP");
    ASSERT_EQ(noProgram.size(), 1);
    EXPECT_TRUE(noProgram.first().contains("\"FTP\""));
    EXPECT_EQ(ReadFileToBytes(paths.gstrFTPStartUpDirectoryFileSpec),
              ("gstrFTPDirectory=" + paths.gstrTempFilesDirectory + "\r\n\r\n").toUtf8());

    test::WriteFile(app.file("FTP"), "#!/bin/sh\npwd > started.txt\n");
    QFile::setPermissions(app.file("FTP"), QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_TRUE(SaidOnClick(&panel, "cmdFTP").isEmpty());
    EXPECT_TRUE(WaitForFile(paths.gstrTempFilesDirectory + "/started.txt"));
}

TEST(SharePanel, SaveToDirAsksBeforeReplacingAnotherFile) {
    test::TestAppFolder app(false);
    QTemporaryDir target;
    const AppPaths paths = AppPaths::forFolder(app.path());
    test::WriteFile(paths.gstrFinalMixMP3FileSpec, "the voice message");
    test::WriteFile(target.path() + "/Trip.mp3", "an older trip");
    DirectorySettings settings;
    SharePanel panel(paths, settings);
    const auto chooseTarget = [&target](QWidget* w) {
        auto* chooser = qobject_cast<frmSetDir*>(w);
        ASSERT_NE(chooser, nullptr);
        chooser->setPath(target.path());
        Child<QPushButton>(chooser, "cmdOK")->click();
    };
    {
        ModalResponder responder({chooseTarget, ModalResponder::typeText("a/b"),
                                  ModalResponder::press("OK"), ModalResponder::typeText(" Trip "),
                                  ModalResponder::press("No")});
        Child<QPushButton>(&panel, "cmdSaveToDir")->click();
        // After "No" the name is asked again; that question is left unanswered.
        ASSERT_EQ(responder.texts.size(), 5) << responder.texts.join('|').toStdString();
        EXPECT_TRUE(responder.texts.at(1).contains("\"/\""));
        EXPECT_TRUE(responder.texts.at(3).contains("already exists"));
        EXPECT_EQ(ReadFileToBytes(target.path() + "/Trip.mp3"), "an older trip");
    }
    EXPECT_EQ(panel.chosenFolder(), target.path());
    {
        ModalResponder responder(
            {chooseTarget, ModalResponder::typeText("Trip"), ModalResponder::press("Yes")});
        Child<QPushButton>(&panel, "cmdSaveToDir")->click();
        EXPECT_EQ(ReadFileToBytes(target.path() + "/Trip.mp3"), "the voice message");
    }

    // A video goes with the captions beside it.
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, "the video message");
    test::WriteFile(paths.gstrTempFilesDirectory + "/FinalMix.srt", "its captions");
    ModalResponder withCaptions({chooseTarget, ModalResponder::typeText("Trip")});
    Child<QPushButton>(&panel, "cmdSaveToDir")->click();
    EXPECT_EQ(ReadFileToBytes(target.path() + "/Trip.avi"), "the video message");
    EXPECT_EQ(ReadFileToBytes(target.path() + "/Trip.srt"), "its captions");
}

// Takes the file URLs the program hands to the desktop, in place of the desktop.
class UrlCatcher : public QObject {
    Q_OBJECT
public slots:
    void open(const QUrl& url) { urls << url; }

public:
    QList<QUrl> urls;
};

TEST(SharePanel, SupportOpensTheHelpPageMadeFromTheReadme) {
    test::TestAppFolder app;
    const AppPaths paths = AppPaths::forFolder(app.path());
    const QString page = app.file("SystemMedia/Help.html");
    EXPECT_TRUE(ReadFileToBytes(page).contains("bash scripts/run.sh"))
        << "the README's first command";
    DirectorySettings settings;
    SharePanel panel(paths, settings);
    UrlCatcher desktop;
    QDesktopServices::setUrlHandler("file", &desktop, "open");
    qputenv("BROWSER", "stub-browser");
    const QStringList opened = SaidOnClick(&panel, "cmdSupport");
    EXPECT_TRUE(opened.isEmpty()) << opened.join('|').toStdString();
    EXPECT_EQ(desktop.urls, QList<QUrl>({QUrl::fromLocalFile(page)}));
    ASSERT_TRUE(QFile::remove(page));
    const QStringList said = SaidOnClick(&panel, "cmdSupport");
    qunsetenv("BROWSER");
    QDesktopServices::unsetUrlHandler("file");
    ASSERT_EQ(said.size(), 1);
    EXPECT_TRUE(said.first().startsWith("The help page"));
    EXPECT_EQ(desktop.urls.size(), 1);
}

#include "ShareWindowsTest.moc"
