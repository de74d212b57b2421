#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace cq {

// Font sizes in points, tried from the largest down; position 1 is the first entry.
inline constexpr std::array<int, 18> kDisplaySizeTable{144, 128, 96, 72, 72, 60, 54, 48, 42,
                                                       36,  30,  24, 18, 14, 12, 10, 9,  8};
inline constexpr int kTextTooBigHeightMarginTwips = 1000;

// What the layout needs to know about the display font at a given point size.
class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;
    // Width of the text in surface pixels.
    virtual int textWidth(const QString& text, int pointSize) const = 0;
    // Height of one printed line, as the surface reports it for "A".
    virtual int textHeightOfA(int pointSize) const = 0;
};

// Position (1-based) in the size table at which a text of this many characters starts.
int StartingSizePosition(int length);
// How long the display window shows a text of this many characters.
int DisplayDurationMilliseconds(int length);
// 1440 twips per inch at the surface's dots per inch.
int TwipsToPixels(int twips, double dotsPerInch);

// Breaks the text into display lines: paragraphs at CR LF, a line is cut after its last space,
// or before the character that overflows when it has none. Empty paragraphs give no line.
QStringList WrapTextToWidth(const QString& text, int surfaceWidth, int pointSize,
                            const TextMeasurer& measurer);

struct TextLayout {
    bool fits = false; // false: not even the smallest size fits ("too big")
    int pointSize = 0;
    QStringList lines;
    int lineHeight = 0;   // pixels per printed line
    int top = 0;          // y of the first line, centring the block
    QList<int> lineLefts; // x of each line, centring it
};

// Chooses the largest size, from the text's starting position on, whose wrapped lines stack
// no higher than the surface height minus 1000 twips.
TextLayout FitTextToSurface(const QString& text, int surfaceWidth, int surfaceHeight,
                            double dotsPerInch, const TextMeasurer& measurer);

} // namespace cq
