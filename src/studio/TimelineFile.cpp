#include "studio/TimelineFile.h"

#include "platform/TextFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QStringDecoder>

namespace cq {

namespace {

// Whether the bytes look like UTF-16 without a byte-order mark: text of the Latin range
// leaves every other byte zero.
bool looksLikeUtf16(const QByteArray& bytes) {
    const qsizetype n = qMin<qsizetype>(bytes.size(), 400);
    qsizetype zeros = 0;
    for (qsizetype i = 0; i < n; ++i)
        zeros += bytes[i] == '\0' ? 1 : 0;
    return n >= 2 && zeros * 3 >= n;
}

} // namespace

QString DecodeTimelineBytes(const QByteArray& bytes, QString* error) {
    const QString saveAsUtf8 = QStringLiteral("; save it again as UTF-8 text");
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF") || looksLikeUtf16(bytes)) {
        *error = QStringLiteral("the file is UTF-16 text, which cannot be read") + saveAsUtf8;
        return {};
    }
    if (bytes.contains('\0')) {
        *error = QStringLiteral("the file holds zero bytes, so it is not a text file");
        return {};
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    // A byte-order mark is dropped by the decoder: such a file reads like one without.
    QString text = utf8(bytes);
    if (utf8.hasError()) {
        *error = QStringLiteral("the file is not UTF-8 text") + saveAsUtf8;
        return {};
    }
    return text;
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
