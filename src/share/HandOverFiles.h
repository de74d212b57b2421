#pragma once

#include <QByteArray>
#include <QString>

namespace cq {

// The two files through which the studio hands a clip to the Emailer companion. Each holds its
// text with every byte inverted (255 - b), followed by one plain CR LF.
struct EmailHandOver {
    QString messageText;    // the body of the new message
    QString attachmentPath; // the file to attach

    static QString messageFileSpec(const QString& gstrSystemTempDirectory);
    static QString attachmentListFileSpec(const QString& gstrSystemTempDirectory);
};

// "Check out this video...  I made it with Harrowfin." and two CR LF.
QString EmailMessageText();

// Inverted UTF-8 bytes of the text plus the plain CR LF; the exact bytes of a hand-over file.
QByteArray EncodeHandOverText(const QString& text);
// The reverse: drops the plain CR LF at the end (if present) and inverts the rest, which is
// read as UTF-8 or, when it is not valid UTF-8 (older installations), as Windows-1252.
QString DecodeHandOverBytes(const QByteArray& bytes);

// Creates the hand-over folder when missing and replaces both files. The attachment list holds
// the path followed by CR LF. Returns false when a file could not be written.
bool WriteEmailHandOver(const QString& gstrSystemTempDirectory, const EmailHandOver& handOver);

struct EmailHandOverReadResult {
    EmailHandOver handOver;
    QString error; // empty when both files were read
    bool ok() const { return error.isEmpty(); }
};
EmailHandOverReadResult ReadEmailHandOver(const QString& gstrSystemTempDirectory);

// A recording without clicked media is a voice message: its sound-only render is sent when it
// exists. Otherwise, and whenever events were logged, the rendered video is sent.
QString ChooseEmailAttachment(int eventCount, const QString& finalMixVideo,
                              const QString& gstrFinalMixMP3FileSpec);

} // namespace cq
