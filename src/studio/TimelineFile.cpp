#include "studio/TimelineFile.h"

#include "platform/OutsideText.h"
#include "platform/TextFiles.h"

#include <QDir>
#include <QFileInfo>

namespace cq {

QString DecodeTimelineBytes(const QByteArray& bytes, QString* error) {
    OutsideText decoded = DecodeOutsideText(bytes);
    if (!decoded.ok()) {
        *error = QStringLiteral("the file %1").arg(decoded.problem);
        return {};
    }
    return decoded.text;
}

std::optional<EventRow> ParseTimelineLine(const QString& line, const QString& baseFolder,
                                          QString* error) {
    std::optional<EventRow> row = EventRow::fromRowText(line, error);
    if (row && !row->fileSpec.isEmpty() && QFileInfo(row->fileSpec).isRelative())
        row->fileSpec = QDir::cleanPath(QDir(baseFolder).absoluteFilePath(row->fileSpec));
    return row;
}

TimelineReadResult ParseTimelineText(const QString& text, const QString& baseFolder) {
    TimelineReadResult result;
    QString unified = text;
    unified.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    unified.replace(u'\r', u'\n');
    QStringList lines = unified.split(u'\n');
    // The file ends with a line end: the piece after it is empty.
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString why;
        std::optional<EventRow> row = ParseTimelineLine(lines[i], baseFolder, &why);
        if (!row) {
            result.error = QStringLiteral("line %1: %2").arg(i + 1).arg(why);
            result.rows.clear();
            return result;
        }
        result.rows << *row;
    }
    return result;
}

TimelineReadResult ReadTimelineFile(const QString& fileSpec) {
    QFileInfo info(fileSpec);
    if (!info.isFile()) {
        TimelineReadResult r;
        r.error = QStringLiteral("the timeline \"%1\" does not exist").arg(fileSpec);
        return r;
    }
    return ReadTimelineBytes(ReadFileToBytes(fileSpec), info.absolutePath());
}

TimelineReadResult ReadTimelineBytes(const QByteArray& bytes, const QString& baseFolder) {
    TimelineReadResult decoded;
    const QString text = DecodeTimelineBytes(bytes, &decoded.error);
    if (!decoded.ok())
        return decoded;
    return ParseTimelineText(text, baseFolder);
}

QString TimelineText(const QList<EventRow>& rows, const QString& baseFolder) {
    const QDir base(baseFolder);
    const QString basePath = QDir::cleanPath(base.absolutePath()) + u'/';
    QString text;
    for (EventRow row : rows) {
        if (QDir::cleanPath(row.fileSpec).startsWith(basePath))
            row.fileSpec = base.relativeFilePath(row.fileSpec);
        text += row.rowText() + QStringLiteral("\r\n");
    }
    return text;
}

bool WriteTimelineFile(const QList<EventRow>& rows, const QString& fileSpec) {
    return WriteWholeFile(TimelineText(rows, QFileInfo(fileSpec).absolutePath()).toUtf8(),
                          fileSpec);
}

} // namespace cq
