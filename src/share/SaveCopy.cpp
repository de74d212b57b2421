#include "share/SaveCopy.h"

#include "captions/SubtitleFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace cq {

QString SaveNameProblem(const QString& name) {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return QStringLiteral("Type a name for the file.");
    if (trimmed.contains(u'/'))
        return QStringLiteral("A file name cannot contain \"/\". Choose the folder first, then "
                              "type the name only.");
    if (trimmed == u"." || trimmed == u"..")
        return QStringLiteral("\"%1\" cannot be used as a file name.").arg(trimmed);
    if (trimmed.contains(QChar(0)) || trimmed.contains(u'\n') || trimmed.contains(u'\r'))
        return QStringLiteral("A file name cannot contain line breaks.");
    // A file name holds 255 bytes, and the copy's name gets an extension (".mp4", ".srt").
    constexpr qsizetype kLongestNameBytes = 250;
    if (trimmed.toUtf8().size() > kLongestNameBytes)
        return QStringLiteral("The name is too long for a file name.");
    return {};
}

QString RenderedFileToSave(const QString& finalMixVideo, const QString& gstrFinalMixMP3FileSpec) {
    if (QFileInfo(finalMixVideo).isFile())
        return finalMixVideo;
    if (QFileInfo(gstrFinalMixMP3FileSpec).isFile())
        return gstrFinalMixMP3FileSpec;
    return {};
}

QString SaveCopyTarget(const QString& folder, const QString& name, const QString& sourceFile) {
    const QString base = TrimChosenFolder(folder);
    const QString extension = QFileInfo(sourceFile).suffix().toLower();
    return (base == u"/" ? base : base + u'/') + name.trimmed() + u'.' + extension;
}

QString TrimChosenFolder(QString folder) {
    while (folder.size() > 1 && folder.endsWith(u'/'))
        folder.chop(1);
    return folder;
}

QString CopyFileReplacing(const QString& source, const QString& target) {
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return QStringLiteral("\"%1\" could not be read: %2").arg(source, in.errorString());
    if (QFileInfo(target).isDir())
        return QStringLiteral("\"%1\" is a folder.").arg(target);
    QSaveFile out(target);
    out.setDirectWriteFallback(false);
    if (!out.open(QIODevice::WriteOnly))
        return QStringLiteral("\"%1\" could not be written: %2").arg(target, out.errorString());
    QByteArray chunk;
    while (!(chunk = in.read(1 << 20)).isEmpty()) {
        if (out.write(chunk) != chunk.size()) {
            out.cancelWriting();
            break;
        }
    }
    if (in.error() != QFile::NoError)
        out.cancelWriting();
    if (!out.commit())
        return QStringLiteral("\"%1\" could not be written: %2").arg(target, out.errorString());
    return {};
}

QString CopySubtitlesAlong(const QString& source, const QString& target) {
    const QStringList from = SubtitleFilesBeside(source);
    const QStringList to = SubtitleFilesBeside(target);
    for (qsizetype i = 0; i < from.size(); ++i) {
        if (!QFileInfo::exists(from[i]))
            continue;
        const QString error = CopyFileReplacing(from[i], to[i]);
        if (!error.isEmpty())
            return error;
    }
    return {};
}

} // namespace cq
