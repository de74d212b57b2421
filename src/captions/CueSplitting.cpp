#include "captions/CueSplitting.h"

#include "captions/SubtitleFiles.h"

#include <QRegularExpression>

namespace cq {

namespace {

QString collapsed(const QString& text) {
    return text.simplified();
}

// The index of the space that splits the text into the most even two lines, the one whose longer
// line is shortest; -1 when it has none.
qsizetype mostEvenBreak(const QString& text) {
    qsizetype best = -1;
    qsizetype bestLonger = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const qsizetype longer = qMax(i, text.size() - i - 1);
        if (text.at(i) == u' ' && (best < 0 || longer < bestLonger)) {
            best = i;
            bestLonger = longer;
        }
    }
    return best;
}

// The index of the last space at which the first line is no longer than the limit; -1 when none.
qsizetype lastBreakWithin(const QString& text, int maxLineLength) {
    const qsizetype from = qMin<qsizetype>(maxLineLength, text.size() - 1);
    for (qsizetype i = from; i >= 0; --i)
        if (text.at(i) == u' ')
            return i;
    return -1;
}

// The most even break when both lines keep within the limit; -1 when no break does.
qsizetype evenBreakWithinLimits(const QString& text, int maxLineLength) {
    const qsizetype at = mostEvenBreak(text);
    return at >= 0 && qMax(at, text.size() - at - 1) <= maxLineLength ? at : -1;
}

} // namespace

QString SpokenWord(const QString& recognized) {
    static const QRegularExpression alternate(QStringLiteral(R"(\(\d+\)$)"));
    QString word = recognized.trimmed();
    if (word.isEmpty() || word.startsWith(u'<') || word.startsWith(u'[') ||
        word.startsWith(QStringLiteral("++")))
        return {};
    word.remove(alternate);
    return word;
}

bool FitsTwoLines(const QString& text, int maxLineLength) {
    const QString t = collapsed(text);
    return t.size() <= maxLineLength || evenBreakWithinLimits(t, maxLineLength) >= 0;
}

QString WrapCaptionLines(const QString& text, int maxLineLength) {
    QString t = collapsed(text);
    if (t.size() <= maxLineLength)
        return t;
    qsizetype at = evenBreakWithinLimits(t, maxLineLength);
    if (at < 0)
        at = lastBreakWithin(t, maxLineLength);
    if (at < 0)
        at = mostEvenBreak(t);
    if (at >= 0)
        t[at] = u'\n';
    return t;
}

CaptionCues CuesFromWords(const RecognizedWords& words, const CueLimits& limits) {
    CaptionCues cues;
    QStringList text;
    CaptionCue cue;
    auto close = [&] {
        if (!text.isEmpty()) {
            cue.text = WrapCaptionLines(text.join(u' '), limits.maxLineLength);
            cues << cue;
        }
        text.clear();
    };
    for (const RecognizedWord& word : words) {
        const QString spoken = SpokenWord(word.text);
        if (spoken.isEmpty())
            continue;
        if (!text.isEmpty()) {
            const bool pause = word.startMs - cue.endMs >= limits.pauseMs;
            const bool full = text.size() >= limits.maxWords ||
                              word.endMs - cue.startMs > limits.maxSpanMs ||
                              !FitsTwoLines(text.join(u' ') + u' ' + spoken, limits.maxLineLength);
            if (pause || full)
                close();
        }
        if (text.isEmpty())
            cue.startMs = word.startMs;
        cue.endMs = qMax(cue.startMs, word.endMs);
        text << spoken;
    }
    close();
    for (qsizetype i = 0; i < cues.size(); ++i) {
        const qint64 next =
            i + 1 < cues.size() ? cues.at(i + 1).startMs : cues.at(i).endMs + limits.minShowMs;
        cues[i].endMs = qMax(cues.at(i).endMs, qMin(cues.at(i).startMs + limits.minShowMs, next));
    }
    return cues;
}

QStringList ShortenLongCues(CaptionCues& cues, int maxCharacters) {
    QStringList notes;
    for (qsizetype i = 0; i < cues.size(); ++i) {
        QString& text = cues[i].text;
        if (text.size() <= maxCharacters)
            continue;
        const qsizetype length = text.size();
        // Cut at the last space within the limit, leaving room for the mark of the cut.
        qsizetype cut = maxCharacters - 3;
        const qsizetype space = text.lastIndexOf(u' ', cut);
        if (space > maxCharacters / 2)
            cut = space;
        if (cut > 0 && text.at(cut - 1).isHighSurrogate())
            --cut;
        text = text.left(cut).trimmed() + QStringLiteral("...");
        notes << QStringLiteral("Caption %1 (at %2) had %3 characters and was shortened to its "
                                "first words, as a caption may hold %4.")
                     .arg(i + 1)
                     .arg(SubtitleTime(cues[i].startMs, u','))
                     .arg(length)
                     .arg(maxCharacters);
    }
    return notes;
}

} // namespace cq
