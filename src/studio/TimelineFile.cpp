#include "studio/TimelineFile.h"

#include "platform/OutsideText.h"
#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"
#include "platform/TimeCode.h"
#include "platform/TimeText.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace cq {

namespace {

const std::array<std::pair<MediaKind, const char*>, 6> kKindWords{{
    {MediaKind::Video, "Video"},
    {MediaKind::Pictures, "Pictures"},
    {MediaKind::Text, "Text"},
    {MediaKind::Both, "Both"},
    {MediaKind::Audio, "Audio"},
    {MediaKind::Untyped, ""},
}};

std::optional<MediaKind> kindOfWord(const QString& word) {
    for (const auto& [kind, text] : kKindWords)
        if (word == QLatin1String(text))
            return kind;
    return std::nullopt;
}

QString withoutControls(QString field) {
    std::replace_if(field.begin(), field.end(), IsControlCharacter,
                    QChar(QChar::ReplacementCharacter));
    return field;
}

// The blanks around a time are left out before it is read, so that a hand-edited file with a
// form feed beside a time still reads.
TimeTextRead readSeconds(const QString& field) {
    return ReadTimeText(field.trimmed(), TimeTextForm::Seconds);
}

} // namespace

QString MediaKindWord(MediaKind kind) {
    for (const auto& [k, text] : kKindWords)
        if (k == kind)
            return QString::fromLatin1(text);
    return {};
}

QString EventSecondsText(qint64 ms) {
    return SecondsTextFromMs(ms);
}

bool ControlCharacterIn(const QString& field) {
    return std::any_of(field.begin(), field.end(), IsControlCharacter);
}

QString TimelineLine(const TimelineEvent& event, int number, const QString& baseFolder) {
    const QDir base(baseFolder);
    QString file = event.file;
    if (QDir::cleanPath(file).startsWith(QDir::cleanPath(base.absolutePath()) + u'/'))
        file = base.relativeFilePath(file);
    QStringList fields{QString::number(number), MediaKindWord(event.kind),
                       EventSecondsText(event.atMs),
                       event.startMs ? EventSecondsText(*event.startMs) : QString(), file};
    if (event.isText() || !event.text.isEmpty())
        fields << event.text;
    for (QString& field : fields)
        field = withoutControls(field);
    return fields.join(u'\t');
}

std::optional<TimelineEvent> ParseTimelineLine(const QString& line, const QString& baseFolder,
                                               QString* error) {
    auto fail = [error](const QString& why) -> std::optional<TimelineEvent> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    const QStringList fields = line.split(u'\t');
    if (fields.size() < 5 || fields.size() > 6)
        return fail(
            QStringLiteral("expected 5 or 6 tab-separated fields, found %1").arg(fields.size()));
    bool ok = false;
    // The number is the line's place, which the reader keeps by the order of the lines.
    if (fields[0].toInt(&ok) < 1 || !ok)
        return fail(QStringLiteral("the count \"%1\" is not a positive number").arg(fields[0]));
    TimelineEvent event;
    const std::optional<MediaKind> kind = kindOfWord(fields[1]);
    if (!kind)
        return fail(QStringLiteral("unknown media type \"%1\"").arg(fields[1]));
    event.kind = *kind;
    const TimeTextRead time = readSeconds(fields[2]);
    if (!time.ok())
        return fail(QStringLiteral("the time %1").arg(time.problem));
    event.atMs = time.ms;
    if (!fields[3].trimmed().isEmpty()) {
        const TimeTextRead start = readSeconds(fields[3]);
        if (!start.ok())
            return fail(QStringLiteral("the begin position %1").arg(start.problem));
        event.startMs = start.ms;
    }
    event.file = fields[4];
    if (!event.file.isEmpty() && QFileInfo(event.file).isRelative())
        event.file = QDir::cleanPath(QDir(baseFolder).absoluteFilePath(event.file));
    if (fields.size() == 6)
        event.text = fields[5];
    return event;
}

QString DecodeTimelineBytes(const QByteArray& bytes, QString* error) {
    OutsideText decoded = DecodeOutsideText(bytes);
    if (!decoded.ok()) {
        *error = QStringLiteral("the file %1").arg(decoded.problem);
        return {};
    }
    return decoded.text;
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
        std::optional<TimelineEvent> event = ParseTimelineLine(lines[i], baseFolder, &why);
        if (!event) {
            result.error = QStringLiteral("line %1: %2").arg(i + 1).arg(why);
            result.rows.clear();
            return result;
        }
        result.rows << *event;
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

QString TimelineText(const QList<TimelineEvent>& rows, const QString& baseFolder) {
    QString text;
    for (qsizetype i = 0; i < rows.size(); ++i)
        text += TimelineLine(rows[i], int(i + 1), baseFolder) + QStringLiteral("\r\n");
    return text;
}

bool WriteTimelineFile(const QList<TimelineEvent>& rows, const QString& fileSpec) {
    return WriteWholeFile(TimelineText(rows, QFileInfo(fileSpec).absolutePath()).toUtf8(),
                          fileSpec);
}

} // namespace cq
