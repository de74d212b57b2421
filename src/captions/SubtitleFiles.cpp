#include "captions/SubtitleFiles.h"

#include <QFileInfo>
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

// "01:02:03,456", "01:02:03.456" or WebVTT's short "02:03.456"; -1 when it is none of them.
qint64 parseTime(const QString& text) {
    static const QRegularExpression re(
        QStringLiteral(R"(^(?:(\d+):)?([0-5]\d):([0-5]\d)[,.](\d{3})$)"));
    const auto m = re.match(text.trimmed());
    if (!m.hasMatch())
        return -1;
    bool ok = true;
    const qint64 hours = m.captured(1).isEmpty() ? 0 : m.captured(1).toLongLong(&ok);
    // Hours whose milliseconds overflow a qint64 are no time of a clip.
    if (!ok || hours > 2000000000000)
        return -1;
    return ((hours * 60 + m.captured(2).toLongLong()) * 60 + m.captured(3).toLongLong()) * 1000 +
           m.captured(4).toLongLong();
}

struct Timing {
    qint64 startMs = -1;
    qint64 endMs = -1;
    bool ok() const { return startMs >= 0 && endMs >= startMs; }
};

// The start and end of "START --> END [cue settings]".
Timing parseTiming(const QString& line) {
    const int arrow = line.indexOf(kArrow);
    const QString end = line.mid(arrow + kArrow.size()).trimmed().section(u' ', 0, 0);
    return {parseTime(line.left(arrow)), parseTime(end)};
}

bool isVttHeaderBlock(const QString& firstLine) {
    return firstLine.startsWith(QStringLiteral("WEBVTT")) ||
           firstLine.startsWith(QStringLiteral("NOTE")) ||
           firstLine.startsWith(QStringLiteral("STYLE")) ||
           firstLine.startsWith(QStringLiteral("REGION"));
}

QStringList blocksOf(const QByteArray& bytes) {
    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    static const QRegularExpression blankLines(QStringLiteral("\n[ \t]*\n+"));
    QStringList blocks;
    for (QString block : text.split(blankLines, Qt::SkipEmptyParts)) {
        while (block.endsWith(u'\n'))
            block.chop(1);
        if (!block.isEmpty())
            blocks << block;
    }
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
    const bool vtt = bytes.startsWith("WEBVTT") || bytes.startsWith("\xEF\xBB\xBFWEBVTT");
    QStringList unreadable;
    for (const QString& block : blocksOf(bytes)) {
        QStringList lines = block.split(u'\n');
        if (vtt && isVttHeaderBlock(lines.first()))
            continue;
        // SRT numbers its cues and WebVTT may name them: the timing line is the first or second.
        if (!lines.first().contains(kArrow) && lines.size() > 1 && lines.at(1).contains(kArrow))
            lines.removeFirst();
        const Timing timing = parseTiming(lines.first());
        if (!lines.first().contains(kArrow) || !timing.ok()) {
            unreadable << lines.first().left(40);
            continue;
        }
        lines.removeFirst();
        if (vtt)
            for (QString& line : lines)
                line = unescapeVtt(line);
        read.cues.append({timing.startMs, timing.endMs, lines.join(u'\n')});
    }
    if (!unreadable.isEmpty())
        read.problem = QStringLiteral("%1 cue(s) could not be read, the first at \"%2\"")
                           .arg(unreadable.size())
                           .arg(unreadable.first());
    return read;
}

} // namespace cq
