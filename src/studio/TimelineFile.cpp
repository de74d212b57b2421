#include "studio/TimelineFile.h"

#include "platform/TextFiles.h"

#include <QDir>
#include <QFileInfo>

namespace cq {

TimelineReadResult ParseTimelineText(const QString& text, const QString& baseFolder) {
    TimelineReadResult result;
    QStringList lines = text.split(QStringLiteral("\r\n"));
    // The file ends with CR LF: the piece after it is empty.
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    const QDir base(baseFolder);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString why;
        std::optional<EventRow> row = EventRow::fromRowText(lines[i], &why);
        if (!row) {
            result.error = QStringLiteral("line %1: %2").arg(i + 1).arg(why);
            result.rows.clear();
            return result;
        }
        if (!row->fileSpec.isEmpty() && QFileInfo(row->fileSpec).isRelative())
            row->fileSpec = QDir::cleanPath(base.absoluteFilePath(row->fileSpec));
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
    return ParseTimelineText(ReadFileToString(fileSpec), info.absolutePath());
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
