#include "platform/FfmpegOutput.h"

#include <QRegularExpression>

#include <cmath>

namespace cq {

namespace {

// Milliseconds that a qint64 holds with room to spare: more is no length of a real file.
constexpr double kMaxMs = 9.0e18;

// "01:02:03.45" to milliseconds; -1 when the text is no clock.
qint64 clockMs(QStringView code) {
    static const QRegularExpression re(QRegularExpression::anchoredPattern(
        QStringLiteral("(\\d+):(\\d{2}):(\\d{2}(?:\\.\\d+)?)")));
    const QRegularExpressionMatch m = re.match(code);
    if (!m.hasMatch())
        return -1;
    bool ok = false;
    const qint64 hours = m.captured(1).toLongLong(&ok);
    if (!ok || hours > qint64(kMaxMs / 3600000.0) - 1)
        return -1;
    const qint64 minutes = m.captured(2).toLongLong();
    const double seconds = m.captured(3).toDouble();
    return (hours * 3600 + minutes * 60) * 1000 + std::llround(seconds * 1000);
}

qint64 secondsTextMs(const QString& text) {
    bool ok = false;
    const double s = text.trimmed().toDouble(&ok);
    // "inf", "nan" and numbers beyond any file's length read as no length.
    return ok && s >= 0 && s * 1000.0 < kMaxMs ? std::llround(s * 1000.0) : -1;
}

// The decibels that open a labelled line, "-35.2 LUFS" or "-inf dBFS"; NaN when there are none.
double decibelsBehind(const QString& text, QStringView label) {
    const QStringList words = FfmpegLabelLine(text, label).split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return qQNaN();
    if (words.first() == u"-inf")
        return -qInf();
    bool ok = false;
    const double value = words.first().toDouble(&ok);
    return ok ? value : qQNaN();
}

// The number behind the first label after a heading of the last summary: "I:  -35.2 LUFS".
double summaryValue(const QString& text, qsizetype summary, QStringView heading,
                    QStringView label) {
    const qsizetype at = text.indexOf(heading, summary);
    // Past the heading: "True peak:" holds "peak:" itself.
    return at < 0 ? qQNaN() : decibelsBehind(text.mid(at + heading.size()), label);
}

} // namespace

QString FfmpegLabelLine(const QString& text, QStringView label) {
    const qsizetype at = text.indexOf(label, 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    const qsizetype from = at + label.size();
    qsizetype end = text.indexOf(u'\n', from);
    if (end < 0)
        end = text.size();
    QString line = text.mid(from, end - from);
    if (line.endsWith(u'\r'))
        line.chop(1);
    return line.isNull() ? QStringLiteral("") : line;
}

QStringList FfmpegStreamFields(const QString& line) {
    QStringList fields;
    int depth = 0;
    QString current;
    for (QChar c : line) {
        if (c == u'(' || c == u'[')
            ++depth;
        else if ((c == u')' || c == u']') && depth > 0)
            --depth;
        if (c == u',' && depth == 0) {
            fields << current.trimmed();
            current.clear();
        } else {
            current += c;
        }
    }
    fields << current.trimmed();
    return fields;
}

QList<FfmpegStream> FfmpegInputStreams(const QString& text) {
    static const QRegularExpression re(
        QStringLiteral("^[ \\t]*Stream #\\d+[:.]\\d+(?:\\[[^\\]\\n]*\\])?(?:\\([^)\\n]*\\))?"
                       "(?:\\[[^\\]\\n]*\\])?: ([A-Za-z]+): ([^\\r\\n]*)"),
        QRegularExpression::MultilineOption);
    QList<FfmpegStream> streams;
    for (const QRegularExpressionMatch& m : re.globalMatch(text))
        streams.append({m.captured(1), m.captured(2)});
    return streams;
}

QString FfmpegDurationCode(const QString& text) {
    static const QRegularExpression lineStart(QStringLiteral("^[ \\t]*Duration: "),
                                              QRegularExpression::MultilineOption |
                                                  QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = lineStart.match(text);
    if (!m.hasMatch())
        return {};
    const qsizetype from = m.capturedEnd();
    const qsizetype comma = text.indexOf(u',', from);
    if (comma < 0)
        return {};
    const QString code = text.mid(from, comma - from).trimmed();
    return clockMs(code) >= 0 ? code : QString();
}

qint64 FfmpegDurationMs(const QString& line) {
    const QString code = FfmpegDurationCode(line);
    return code.isEmpty() ? -1 : clockMs(code);
}

qint64 FfmpegProgressMs(const QString& line) {
    if (line.startsWith(u"out_time_us=")) {
        bool ok = false;
        const qint64 us = line.mid(12).trimmed().toLongLong(&ok);
        return ok && us >= 0 ? us / 1000 : -1;
    }
    static const QRegularExpression re(QStringLiteral("\\btime=\\s*(\\S+)"));
    const QRegularExpressionMatch m = re.match(line);
    return m.hasMatch() ? clockMs(m.captured(1)) : -1;
}

int FfmpegProgressPercent(qint64 reachedMs, qint64 totalMs) {
    if (totalMs <= 0 || reachedMs <= 0)
        return 0;
    // reachedMs * 100 would overflow for a clock near the end of a qint64.
    return reachedMs >= totalMs ? 99 : int(qMin<qint64>(reachedMs / (totalMs / 100.0), 99));
}

QList<QPair<QString, QString>> FfprobeKeyValues(const QString& text) {
    QList<QPair<QString, QString>> pairs;
    for (QStringView line : QStringView(text).split(u'\n')) {
        line = line.trimmed();
        const qsizetype eq = line.indexOf(u'=');
        if (eq <= 0)
            continue;
        pairs.append({line.left(eq).toString(), line.mid(eq + 1).toString()});
    }
    return pairs;
}

ProbedLengths FfprobeLengths(const QString& text) {
    // Each stream's codec_type comes before its duration; the container's duration comes last,
    // with no codec_type of its own.
    ProbedLengths lengths;
    QString type;
    for (const auto& [key, value] : FfprobeKeyValues(text)) {
        if (key == u"codec_type") {
            type = value;
            continue;
        }
        if (key != u"duration")
            continue;
        const qint64 ms = secondsTextMs(value);
        if (type == u"video" && lengths.videoMs < 0)
            lengths.videoMs = ms;
        else if (type == u"audio" && lengths.audioMs < 0)
            lengths.audioMs = ms;
        else if (type.isEmpty())
            lengths.formatMs = ms;
        type.clear();
    }
    return lengths;
}

LoudnessSummary FfmpegLoudnessSummary(const QString& text) {
    // The filter prints a line per 100 ms at verbose level; only the summary at the end counts.
    const qsizetype summary = text.lastIndexOf(u"Summary:");
    if (summary < 0)
        return {};
    LoudnessSummary s;
    s.integratedLufs = summaryValue(text, summary, u"Integrated loudness:", u"I:");
    s.truePeakDb = summaryValue(text, summary, u"True peak:", u"Peak:");
    return s;
}

double FfmpegNoiseFloorDb(const QString& text) {
    return decibelsBehind(text, u"Noise floor dB: ");
}

} // namespace cq
