#include "captions/SubtitleFiles.h"

#include "platform/OutsideText.h"
#include "platform/TimeText.h"

#include <QFileInfo>
#include <QList>
#include <QRegularExpression>
#include <QStringList>

namespace cq {

namespace {

const QString kArrow = QStringLiteral("-->");

// The lines of a cue's text as they may be written: no blank line (it would end the cue) and no
// arrow (it would read as a timing line).
QStringList writableLines(const QString& text) {
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    t.replace(kArrow, QStringLiteral("--\u00A0>"));
    QStringList lines;
    for (const QString& line : t.split(u'\n'))
        if (!line.trimmed().isEmpty())
            lines << line;
    return lines;
}

QString escapeVtt(const QString& line) {
    QString s = line;
    return s.replace(u'&', QStringLiteral("&amp;")).replace(u'<', QStringLiteral("&lt;"));
}

QString unescapeVtt(const QString& line) {
    QString s = line;
    return s.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&nbsp;"), QStringLiteral("\u00A0"))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
}

struct Timing {
    qint64 startMs = -1;
    qint64 endMs = -1;
    QString problem; // why the timing line cannot be read; empty when it can
};

// "01:02:03,456", "01:02:03.456" or WebVTT's short "02:03.456", read as `what` ("the start").
TimeTextRead parseTime(const QString& text, const QString& what) {
    static const QRegularExpression re(QStringLiteral(R"(^(?:\d+:)?[0-5]\d:[0-5]\d[,.]\d{3}$)"));
    const QString time = text.trimmed();
    if (!re.match(time).hasMatch())
        return {-1, QStringLiteral("%1 \"%2\" is not a time").arg(what, time.left(40))};
    TimeTextRead read = ReadTimeText(time, TimeTextForm::Clock);
    if (!read.ok())
        read.problem = what + u' ' + read.problem;
    return read;
}

// The start and end of "START --> END [cue settings]".
Timing parseTiming(const QString& line) {
    const qsizetype arrow = line.indexOf(kArrow);
    if (arrow < 0)
        return {-1, -1, QStringLiteral("it has no \"-->\" between two times")};
    const QString end = line.mid(arrow + kArrow.size()).trimmed().section(u' ', 0, 0);
    const TimeTextRead start = parseTime(line.left(arrow), QStringLiteral("the start"));
    const TimeTextRead stop = parseTime(end, QStringLiteral("the end"));
    if (!start.ok() || !stop.ok())
        return {-1, -1, start.ok() ? stop.problem : start.problem};
    if (stop.ms < start.ms)
        return {-1, -1, QStringLiteral("it ends before it starts")};
    return {start.ms, stop.ms, QString()};
}

bool isVttHeaderBlock(const QString& firstLine) {
    return firstLine.startsWith(QStringLiteral("WEBVTT")) ||
           firstLine.startsWith(QStringLiteral("NOTE")) ||
           firstLine.startsWith(QStringLiteral("STYLE")) ||
           firstLine.startsWith(QStringLiteral("REGION"));
}

// A cue or header: its lines and the number of its first line in the file.
struct Block {
    int firstLine = 0;
    QStringList lines;
};

QList<Block> blocksOf(const QString& decoded) {
    QString text = decoded;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    QList<Block> blocks;
    Block block;
    int number = 0;
    for (const QString& line : text.split(u'\n')) {
        ++number;
        if (line.trimmed().isEmpty()) {
            if (!block.lines.isEmpty())
                blocks << block;
            block = Block();
            continue;
        }
        if (block.lines.isEmpty())
            block.firstLine = number;
        block.lines << line;
    }
    if (!block.lines.isEmpty())
        blocks << block;
    return blocks;
}

} // namespace

QStringList SubtitleFilesBeside(const QString& video) {
    const QFileInfo fi(video);
    QString base = fi.fileName();
    if (!fi.suffix().isEmpty())
        base.chop(fi.suffix().size() + 1);
    const QString stem = fi.path() + u'/' + base;
    return {stem + QStringLiteral(".srt"), stem + QStringLiteral(".vtt")};
}

QString SubtitleTime(qint64 ms, QChar separator) {
    ms = qMax<qint64>(0, ms);
    return QStringLiteral("%1:%2:%3%4%5")
        .arg(ms / 3600000, 2, 10, QChar(u'0'))
        .arg(ms / 60000 % 60, 2, 10, QChar(u'0'))
        .arg(ms / 1000 % 60, 2, 10, QChar(u'0'))
        .arg(separator)
        .arg(ms % 1000, 3, 10, QChar(u'0'));
}

QByteArray WriteSrt(const CaptionCues& cues) {
    QString out;
    int number = 0;
    for (const CaptionCue& cue : cues) {
        const QStringList lines = writableLines(cue.text);
        if (lines.isEmpty())
            continue;
        out += QStringLiteral("%1\n%2 --> %3\n%4\n\n")
                   .arg(++number)
                   .arg(SubtitleTime(cue.startMs, u','), SubtitleTime(cue.endMs, u','),
                        lines.join(u'\n'));
    }
    return out.toUtf8();
}

QByteArray WriteVtt(const CaptionCues& cues) {
    QString out = QStringLiteral("WEBVTT\n\n");
    for (const CaptionCue& cue : cues) {
        QStringList lines = writableLines(cue.text);
        if (lines.isEmpty())
            continue;
        for (QString& line : lines)
            line = escapeVtt(line);
        out += QStringLiteral("%1 --> %2\n%3\n\n")
                   .arg(SubtitleTime(cue.startMs, u'.'), SubtitleTime(cue.endMs, u'.'),
                        lines.join(u'\n'));
    }
    return out.toUtf8();
}

ReadCues ReadSubtitles(const QByteArray& bytes) {
    ReadCues read;
    const OutsideText decoded = DecodeOutsideText(bytes);
    if (!decoded.ok()) {
        read.problem = QStringLiteral("the file %1").arg(decoded.problem);
        return read;
    }
    const bool vtt = decoded.text.startsWith(QStringLiteral("WEBVTT"));
    int unreadable = 0;
    for (Block block : blocksOf(decoded.text)) {
        QStringList& lines = block.lines;
        if (vtt && isVttHeaderBlock(lines.first()))
            continue;
        // SRT numbers its cues and WebVTT may name them: the timing line is the first or second.
        if (!lines.first().contains(kArrow) && lines.size() > 1 && lines.at(1).contains(kArrow)) {
            lines.removeFirst();
            ++block.firstLine;
        }
        const Timing timing = parseTiming(lines.first());
        if (!timing.problem.isEmpty()) {
            if (unreadable++ == 0)
                read.problem = QStringLiteral("line %1, \"%2\": %3")
                                   .arg(block.firstLine)
                                   .arg(lines.first().left(40), timing.problem);
            continue;
        }
        lines.removeFirst();
        if (vtt)
            for (QString& line : lines)
                line = unescapeVtt(line);
        read.cues.append({timing.startMs, timing.endMs, lines.join(u'\n')});
    }
    if (unreadable > 0)
        read.problem = QStringLiteral("%1 cue(s) could not be read, the first at %2")
                           .arg(unreadable)
                           .arg(read.problem);
    return read;
}

} // namespace cq
