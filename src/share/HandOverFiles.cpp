#include "share/HandOverFiles.h"

#include "platform/Folders.h"
#include "platform/LegacyText.h"
#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"

#include <QFileInfo>

namespace cq {

QString EmailHandOver::messageFileSpec(const QString& gstrSystemTempDirectory) {
    return gstrSystemTempDirectory + QStringLiteral("/EmailMessageText.txt");
}

QString EmailHandOver::attachmentListFileSpec(const QString& gstrSystemTempDirectory) {
    return gstrSystemTempDirectory + QStringLiteral("/EmailAttachmentList.txt");
}

QString EmailMessageText() {
    return QStringLiteral("Check out this video...  I made it with Harrowfin.\r\n\r\n");
}

QByteArray EncodeHandOverText(const QString& text) {
    return InvertCharacters(text.toUtf8()) + QByteArrayLiteral("\r\n");
}

QString DecodeHandOverBytes(const QByteArray& bytes) {
    QByteArray body = bytes;
    if (body.endsWith("\r\n"))
        body.chop(2);
    // Files handed over by older installations hold Windows-1252 bytes rather than UTF-8.
    return DecodeUtf8OrWindows1252(InvertCharacters(body));
}

bool WriteEmailHandOver(const QString& gstrSystemTempDirectory, const EmailHandOver& handOver) {
    if (!MakeFolderPath(gstrSystemTempDirectory))
        return false;
    const bool message = WriteWholeFile(EncodeHandOverText(handOver.messageText),
                                        EmailHandOver::messageFileSpec(gstrSystemTempDirectory));
    const bool list =
        WriteWholeFile(EncodeHandOverText(handOver.attachmentPath + QStringLiteral("\r\n")),
                       EmailHandOver::attachmentListFileSpec(gstrSystemTempDirectory));
    return message && list;
}

EmailHandOverReadResult ReadEmailHandOver(const QString& gstrSystemTempDirectory) {
    EmailHandOverReadResult result;
    const QString messageFile = EmailHandOver::messageFileSpec(gstrSystemTempDirectory);
    const QString listFile = EmailHandOver::attachmentListFileSpec(gstrSystemTempDirectory);
    for (const QString& file : {messageFile, listFile}) {
        if (!QFileInfo(file).isFile()) {
            result.error = QStringLiteral("The hand-over file \"%1\" is missing.").arg(file);
            return result;
        }
    }
    result.handOver.messageText = DecodeHandOverBytes(ReadFileToBytes(messageFile));
    QString list = DecodeHandOverBytes(ReadFileToBytes(listFile));
    // The list holds one line; a name never contains CR or LF, so the first line is the file.
    const qsizetype lineEnd = list.indexOf(QStringLiteral("\r\n"));
    if (lineEnd >= 0)
        list.truncate(lineEnd);
    result.handOver.attachmentPath = list;
    if (list.isEmpty())
        result.error = QStringLiteral("The hand-over file \"%1\" names no file.").arg(listFile);
    return result;
}

QString ChooseEmailAttachment(int eventCount, const QString& finalMixVideo,
                              const QString& gstrFinalMixMP3FileSpec) {
    if (eventCount == 0 && QFileInfo(gstrFinalMixMP3FileSpec).isFile())
        return gstrFinalMixMP3FileSpec;
    return finalMixVideo;
}

} // namespace cq
