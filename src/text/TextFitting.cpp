#include "text/TextFitting.h"

#include <cmath>

namespace cq {

int StartingSizePosition(int length) {
    static constexpr std::array<std::pair<int, int>, 9> kLimits{
        {{20, 1}, {40, 2}, {60, 3}, {80, 4}, {100, 5}, {140, 6}, {180, 7}, {220, 8}, {270, 9}}};
    for (const auto& [limit, position] : kLimits)
        if (length < limit)
            return position;
    return 10;
}

int DisplayDurationMilliseconds(int length) {
    static constexpr std::array<int, 5> kLimits{20, 40, 60, 80, 100};
    for (std::size_t i = 0; i < kLimits.size(); ++i)
        if (length < kLimits[i])
            return 1000 + 200 * static_cast<int>(i);
    return 2000;
}

int TwipsToPixels(int twips, double dotsPerInch) {
    return static_cast<int>(std::lround(twips * dotsPerInch / 1440.0));
}

namespace {

void wrapParagraph(const QString& paragraph, int surfaceWidth, int pointSize,
                   const TextMeasurer& measurer, QStringList& lines) {
    qsizetype lineStart = 0;
    qsizetype lastSpace = -1; // index of the last space in the line being built
    for (qsizetype j = 0; j < paragraph.size(); ++j) {
        const QString candidate = paragraph.mid(lineStart, j - lineStart + 1);
        if (measurer.textWidth(candidate, pointSize) > surfaceWidth) {
            if (lastSpace >= 0) {
                lines.append(paragraph.mid(lineStart, lastSpace - lineStart + 1));
                lineStart = lastSpace + 1;
                lastSpace = -1;
            } else if (j > lineStart) {
                // A single character wider than the surface stays on a line of its own rather
                // than leaving an empty line behind.
                lines.append(paragraph.mid(lineStart, j - lineStart));
                lineStart = j;
            }
        }
        if (paragraph.at(j) == u' ')
            lastSpace = j;
    }
    if (lineStart < paragraph.size())
        lines.append(paragraph.mid(lineStart));
}

} // namespace

QStringList WrapTextToWidth(const QString& text, int surfaceWidth, int pointSize,
                            const TextMeasurer& measurer) {
    QStringList lines;
    const QStringList paragraphs = text.split(QStringLiteral("\r\n"));
    for (const QString& paragraph : paragraphs)
        wrapParagraph(paragraph, surfaceWidth, pointSize, measurer, lines);
    return lines;
}

TextLayout FitTextToSurface(const QString& text, int surfaceWidth, int surfaceHeight,
                            double dotsPerInch, const TextMeasurer& measurer) {
    TextLayout layout;
    const int heightLimit =
        surfaceHeight - TwipsToPixels(kTextTooBigHeightMarginTwips, dotsPerInch);
    for (int position = StartingSizePosition(static_cast<int>(text.size()));
         position <= static_cast<int>(kDisplaySizeTable.size()); ++position) {
        const int pointSize = kDisplaySizeTable[static_cast<std::size_t>(position - 1)];
        QStringList lines = WrapTextToWidth(text, surfaceWidth, pointSize, measurer);
        const int lineHeight = measurer.textHeightOfA(pointSize);
        const int totalHeight = static_cast<int>(lines.size()) * lineHeight;
        if (totalHeight > heightLimit)
            continue;
        layout.fits = true;
        layout.pointSize = pointSize;
        layout.lineHeight = lineHeight;
        layout.top = (surfaceHeight - totalHeight) / 2;
        // A line cut after a space keeps it, but the eye centres what is visible.
        for (const QString& line : lines) {
            qsizetype visible = line.size();
            while (visible > 0 && line.at(visible - 1) == u' ')
                --visible;
            layout.lineLefts.append(
                (surfaceWidth - measurer.textWidth(line.left(visible), pointSize)) / 2);
        }
        layout.lines = std::move(lines);
        return layout;
    }
    return layout;
}

} // namespace cq
