#include "share/widgets/SharePanel.h"

#include "platform/Folders.h"
#include "platform/widgets/NamedButton.h"
#include "platform/widgets/OpenUrl.h"
#include "share/CompanionPrograms.h"
#include "share/HandOverFiles.h"
#include "share/SaveCopy.h"
#include "share/widgets/frmConvertAndEmail.h"
#include "share/widgets/frmSetDir.h"
#include "studio/DirectorySettings.h"
#include "studio/FinalMix.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

namespace cq {

namespace {
QString NoRenderedClipText(const QString& action) {
    return QStringLiteral("There is no rendered clip yet. Click Render first, then %1.")
        .arg(action);
}
} // namespace

SharePanel::SharePanel(const AppPaths& paths, DirectorySettings& settings, QWidget* parent)
    : QWidget(parent), m_paths(paths), m_settings(settings) {
    setObjectName(QStringLiteral("fraShare"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    connect(addButton("cmdEmail", QStringLiteral("Email"),
                      QStringLiteral("Create Email in your desktop's mail client (opened with "
                                     "xdg-email, like Thunderbird or Evolution), with the final "
                                     "mix video as an attachment.")),
            &QPushButton::clicked, this, &SharePanel::cmdEmail_Click);
    connect(addButton("cmdConvert", QStringLiteral("Convert"),
                      QStringLiteral("Convert Videos to the format you want, and then have the "
                                     "ability to email or send to cellphones via email.")),
            &QPushButton::clicked, this, &SharePanel::cmdConvert_Click);
    connect(addButton("cmdSaveToDir", QStringLiteral("Save To Dir"),
                      QStringLiteral("Save File to a new name in the directory you select.")),
            &QPushButton::clicked, this, &SharePanel::cmdSaveToDir_Click);
    connect(addButton("cmdFTP", QStringLiteral("FTP"),
                      QStringLiteral("Run FTP Program so you can FTP your video to a server.")),
            &QPushButton::clicked, this, &SharePanel::cmdFTP_Click);
    connect(addButton("cmdSupport", QStringLiteral("Support"),
                      QStringLiteral("Support Webpage that has instructions for installation, and "
                                     "how to use this product.")),
            &QPushButton::clicked, this, &SharePanel::cmdSupport_Click);
    row->addStretch(1);

    m_chosenFolder =
        !settings.gstrMyVideoDirectory.isEmpty() && QFileInfo(settings.gstrMyVideoDirectory).isDir()
            ? settings.gstrMyVideoDirectory
            : QDir::homePath();
}

QPushButton* SharePanel::addButton(const char* objectName, const QString& caption,
                                   const QString& tip) {
    auto* button = NamedButton(caption, QString::fromLatin1(objectName), tip, this);
    layout()->addWidget(button);
    return button;
}

void SharePanel::setEventCountProvider(std::function<int()> provider) {
    m_eventCount = std::move(provider);
}

void SharePanel::cmdEmail_Click() {
    const QString attachment = clipToMail();
    if (!QFileInfo(attachment).isFile()) {
        tell(NoRenderedClipText(QStringLiteral("mail it")));
        return;
    }
    handOverToEmailer(attachment);
}

QString SharePanel::clipToMail() const {
    const QString video = LatestFinalMix(m_paths);
    const int events = m_eventCount ? m_eventCount() : (QFileInfo(video).isFile() ? 1 : 0);
    return ChooseEmailAttachment(events, video, m_paths.gstrFinalMixMP3FileSpec);
}

void SharePanel::handOverToEmailer(const QString& attachment) {
    const QString emailer =
        LocateEmailer(QCoreApplication::applicationDirPath(), m_paths.appFolder);
    if (emailer.isEmpty()) {
        tell(QStringLiteral("The Emailer program is missing from \"%1\". Install Clipquill again.")
                 .arg(QCoreApplication::applicationDirPath()));
        return;
    }
    if (!WriteEmailHandOver(m_paths.gstrSystemTempDirectory, {EmailMessageText(), attachment})) {
        tell(QStringLiteral("The message could not be written to \"%1\".")
                 .arg(m_paths.gstrSystemTempDirectory));
        return;
    }
    if (StartCompanion(emailer, EmailerArguments(m_paths.appFolder)) == 0)
        tell(QStringLiteral("The Emailer program \"%1\" could not be started.").arg(emailer));
}

void SharePanel::cmdConvert_Click() {
    if (!QFileInfo(LatestFinalMix(m_paths)).isFile()) {
        tell(NoRenderedClipText(QStringLiteral("convert it")));
        return;
    }
    frmConvertAndEmail dialog(m_paths, window());
    dialog.exec();
}

void SharePanel::cmdSaveToDir_Click() {
    frmSetDir chooser(m_chosenFolder, window());
    chooser.exec();
    if (chooser.cancelled())
        return;
    m_chosenFolder = chooser.chosenFolder();
    const QString source =
        RenderedFileToSave(LatestFinalMix(m_paths), m_paths.gstrFinalMixMP3FileSpec);
    if (source.isEmpty()) {
        tell(NoRenderedClipText(QStringLiteral("save it")));
        return;
    }
    saveRenderedFileTo(source);
}

void SharePanel::saveRenderedFileTo(const QString& source) {
    QString name;
    while (true) {
        bool ok = false;
        name = QInputDialog::getText(window(), QStringLiteral("Save To Dir"),
                                     QStringLiteral("Type in a name for this file"),
                                     QLineEdit::Normal, name, &ok);
        if (!ok || name.trimmed().isEmpty())
            return;
        const QString problem = SaveNameProblem(name);
        if (!problem.isEmpty()) {
            tell(problem);
            continue;
        }
        const QString target = SaveCopyTarget(m_chosenFolder, name, source);
        if (QFileInfo::exists(target)) {
            const auto answer = QMessageBox::question(
                window(), QStringLiteral("Save To Dir"),
                QStringLiteral("\"%1\" already exists. Do you want to replace it?").arg(target),
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
            if (answer != QMessageBox::Yes)
                continue;
        }
        const QString error = CopyFileReplacing(source, target);
        if (!error.isEmpty())
            tell(QStringLiteral("The file was not saved."), error);
        else if (const QString subtitles = CopySubtitlesAlong(source, target); !subtitles.isEmpty())
            tell(QStringLiteral("The clip was saved, but not its captions."), subtitles);
        return;
    }
}

void SharePanel::cmdFTP_Click() {
    if (writeFtpStartFolder())
        startFtpProgram();
}

// The FTP program starts in the work folder, where the rendered clip is.
bool SharePanel::writeFtpStartFolder() {
    m_settings.gstrFTPDirectory = m_paths.gstrTempFilesDirectory;
    if (m_settings.SaveFTPDirectoryToFile(m_paths.gstrFTPStartUpDirectoryFileSpec))
        return true;
    tell(QStringLiteral("The FTP start folder could not be written to \"%1\".")
             .arg(m_paths.gstrFTPStartUpDirectoryFileSpec));
    return false;
}

void SharePanel::startFtpProgram() {
    if (!FtpProgramAvailable(m_paths.appFolder)) {
        tell(FtpMissingMessage(m_paths.appFolder));
        return;
    }
    const QString ftp = FtpProgramFileSpec(m_paths.appFolder);
    MakeFolderPath(m_paths.gstrTempFilesDirectory); // the FTP program starts in it
    if (StartCompanion(ftp, {}, m_paths.gstrTempFilesDirectory) == 0)
        tell(QStringLiteral("The FTP program \"%1\" could not be started.").arg(ftp));
}

void SharePanel::cmdSupport_Click() {
    const QString page = SupportPageFileSpec(m_paths.appFolder);
    if (!QFileInfo::exists(page)) {
        tell(QStringLiteral("The help page \"%1\" is missing. Copy the SystemMedia folder of "
                            "the installation into the application folder.")
                 .arg(page));
        return;
    }
    OpenURLInBrowser(QUrl::fromLocalFile(page).toString(), window());
}

void SharePanel::tell(const QString& text, const QString& detail) {
    QMessageBox box(QMessageBox::Information, window()->windowTitle(), text, QMessageBox::Ok,
                    window());
    box.setObjectName(QStringLiteral("msgShare"));
    if (!detail.isEmpty())
        box.setDetailedText(detail);
    box.exec();
}

} // namespace cq
