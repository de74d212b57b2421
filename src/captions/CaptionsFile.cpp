#include "captions/CaptionsFile.h"

#include "platform/TextFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace cq {

QString CaptionsFileIn(const QString& folder) {
    return QDir(folder).filePath(QString::fromLatin1(kCaptionsFileName));
}

bool SaveCaptionsFile(const CaptionCues& cues, const QString& fileSpec) {
    if (cues.isEmpty())
        return !QFileInfo::exists(fileSpec) || QFile::remove(fileSpec);
    return WriteWholeFile(WriteSrt(cues), fileSpec);
}

ReadCues ReadCaptionsFile(const QString& fileSpec) {
    if (!QFileInfo::exists(fileSpec))
        return {};
    const QString notAFile = NotARegularFileProblem(fileSpec);
    if (!notAFile.isEmpty())
        return {{}, notAFile};
    QFile file(fileSpec);
    if (!file.open(QIODevice::ReadOnly))
        return {{},
                QStringLiteral("\"%1\" could not be read: %2").arg(fileSpec, file.errorString())};
    ReadCues read = ReadSubtitles(file.readAll());
    if (!read.problem.isEmpty())
        read.problem = QStringLiteral("%1: %2").arg(fileSpec, read.problem);
    return read;
}

} // namespace cq
