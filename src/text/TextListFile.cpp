#include "text/TextListFile.h"

#include "platform/LegacyText.h"
#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"

namespace cq {

QByteArray EncodeTextList(const QStringList& entries) {
    QByteArray plain;
    for (const QString& e : entries)
        plain += e.toUtf8() + "\r\n";
    return InvertCharacters(plain) + "\r\n";
}

QString DecodeTextListForEditing(const QByteArray& fileBytes) {
    if (fileBytes.size() < 2)
        return {};
    // Lists saved by older installations hold Windows-1252 bytes rather than UTF-8.
    return DecodeUtf8OrWindows1252(InvertCharacters(fileBytes.left(fileBytes.size() - 2)));
}

QStringList DecodeTextList(const QByteArray& fileBytes) {
    return SplitToArrayNonEmpty(DecodeTextListForEditing(fileBytes), QStringLiteral("\r\n"));
}

QStringList LoadTextList(const QString& fileSpec) {
    return DecodeTextList(ReadFileToBytes(fileSpec));
}

bool SaveTextList(const QStringList& entries, const QString& fileSpec) {
    return WriteWholeFile(EncodeTextList(entries), fileSpec);
}

bool SaveTextListText(const QString& text, const QString& fileSpec) {
    return SaveBytesToFile(InvertCharacters(text.toUtf8()), fileSpec);
}

QStringList DefaultTextList() {
    return {QStringLiteral("Now that's a great idea!"),
            QStringLiteral("Why didn't I think of that."), QStringLiteral("Doh!"),
            QStringLiteral("Dude....")};
}

} // namespace cq
