#include "render/BurnedCaptions.h"

#include <QDir>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace cq {

namespace {

// Raised whenever the look of burned captions changes, so that pieces showing them are made
// again.
constexpr int kCaptionLook = 1;

// Script units: the font size and the margins are shares of this height, so that the captions
// take the same part of the frame at every output size.
constexpr int kScriptHeight = 288;

const QString kFontsFolder = QStringLiteral("/usr/share/fonts/truetype/liberation");

struct CueFrames {
    qint64 first = 0;
    qint64 end = 0;
};

CueFrames framesOf(const CaptionCue& cue, const FrameRate& rate) {
    return {rate.frameAt(cue.startMs), rate.frameAt(cue.endMs)};
}

// The lines of a cue's text, blank ones dropped: an empty cue shows nothing.
QStringList linesOf(const QString& text) {
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    QStringList lines;
    for (const QString& line : t.split(u'\n'))
        if (!line.trimmed().isEmpty())
            lines << line.trimmed();
    return lines;
}

// A cue's text as libass shows it literally: braces would open override tags, a backslash could
// start "\N" or "\h". A word joiner (drawn as nothing) after every backslash keeps it plain.
QString scriptText(const QString& text) {
    QStringList lines = linesOf(text);
    for (QString& line : lines) {
        line.replace(u'\\', QStringLiteral("\\\u2060"));
        line.replace(u'{', QStringLiteral("\\{")).replace(u'}', QStringLiteral("\\}"));
    }
    return lines.join(QStringLiteral("\\N"));
}

// Halfway between a frame and the one before it, so that rounding to the script's hundredths
// of a second never moves a cue onto a neighbouring frame.
QString scriptTime(qint64 frame, const FrameRate& rate) {
    const double ms = frame <= 0 ? 0.0 : (double(frame) - 0.5) * 1000.0 * rate.den / rate.num;
    const qint64 cs = std::llround(ms / 10.0);
    return QStringLiteral("%1:%2:%3.%4")
        .arg(cs / 360000)
        .arg(cs / 6000 % 60, 2, 10, QChar(u'0'))
        .arg(cs / 100 % 60, 2, 10, QChar(u'0'))
        .arg(cs % 100, 2, 10, QChar(u'0'));
}

QString quoted(const QString& text) {
    QString s = text;
    s.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
    s.replace(u'\n', QStringLiteral("\\n")).replace(u'\r', QStringLiteral("\\r"));
    return u'"' + s + u'"';
}

QString scriptHeader(const QSize& frameSize) {
    // The script's width follows the frame's shape, so letters are never stretched.
    const int width = std::max(1, int(std::lround(double(kScriptHeight) * frameSize.width() /
                                                  std::max(1, frameSize.height()))));
    return QStringLiteral("[Script Info]\nScriptType: v4.00+\nPlayResX: %1\nPlayResY: %2\n"
                          "WrapStyle: 0\nScaledBorderAndShadow: yes\n\n"
                          "[V4+ Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour, "
                          "SecondaryColour, OutlineColour, BackColour, Bold, Italic, Underline, "
                          "StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, "
                          "Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
                          "Style: Caption,Liberation Sans,20,&H00FFFFFF,&H00FFFFFF,&H00000000,"
                          "&H80000000,0,0,0,0,100,100,0,0,1,2,0,2,16,16,12,1\n\n"
                          "[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, "
                          "MarginV, Effect, Text\n")
        .arg(width)
        .arg(kScriptHeight);
}

} // namespace

PieceCues PieceCuesOf(const CaptionCues& cues, const FrameRate& rate, qint64 firstFrame,
                      qint64 frames) {
    PieceCues shown;
    for (const CaptionCue& cue : cues) {
        const CueFrames f = framesOf(cue, rate);
        const qint64 first = std::max(f.first, firstFrame) - firstFrame;
        const qint64 end = std::min(f.end, firstFrame + frames) - firstFrame;
        const QStringList lines = linesOf(cue.text);
        if (end > first && !lines.isEmpty())
            shown.append({first, end, lines.join(u'\n')});
    }
    return shown;
}

QList<qint64> CueEdgesWithin(const CaptionCues& cues, const FrameRate& rate, qint64 from,
                             qint64 to) {
    QList<qint64> edges;
    for (const CaptionCue& cue : cues) {
        const CueFrames f = framesOf(cue, rate);
        if (f.end <= f.first || linesOf(cue.text).isEmpty())
            continue;
        for (qint64 edge : {f.first, f.end})
            if (edge > from && edge < to)
                edges << edge;
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

QString PieceCuesRecipe(const PieceCues& cues) {
    if (cues.isEmpty())
        return {};
    QStringList parts{QStringLiteral("look %1").arg(kCaptionLook)};
    for (const PieceCue& cue : cues)
        parts << QStringLiteral("%1-%2 ").arg(cue.firstFrame).arg(cue.endFrame) + quoted(cue.text);
    return parts.join(QStringLiteral(", "));
}

QByteArray BurnedCaptionsScript(const PieceCues& cues, const FrameRate& rate,
                                const QSize& frameSize) {
    QString script = scriptHeader(frameSize);
    for (const PieceCue& cue : cues)
        script += QStringLiteral("Dialogue: 0,%1,%2,Caption,,0,0,0,,")
                      .arg(scriptTime(cue.firstFrame, rate), scriptTime(cue.endFrame, rate)) +
                  scriptText(cue.text) + u'\n';
    return script.toUtf8();
}

QString BurnedCaptionsFilter(const QString& scriptFile) {
    QString filter = QStringLiteral("subtitles=filename=") + FilterGraphValue(scriptFile);
    // The font's own folder, so that libass finds it whatever fontconfig is told.
    if (QDir(kFontsFolder).exists())
        filter += QStringLiteral(":fontsdir=") + FilterGraphValue(kFontsFolder);
    return filter;
}

QString FilterGraphValue(const QString& value) {
    QString option;
    for (QChar c : value) {
        if (c == u'\\' || c == u'\'' || c == u':')
            option += u'\\';
        option += c;
    }
    QString graph;
    for (QChar c : option) {
        if (c == u'\\' || c == u'\'' || c == u'[' || c == u']' || c == u',' || c == u';')
            graph += u'\\';
        graph += c;
    }
    return graph;
}

} // namespace cq
