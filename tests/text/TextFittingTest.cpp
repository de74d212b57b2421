#include "text/TextFitting.h"

#include <gtest/gtest.h>

using namespace cq;

namespace {

// Every character is half the point size wide; a line is one and a half times the point size.
class FakeMeasurer : public TextMeasurer {
public:
    int textWidth(const QString& text, int pointSize) const override {
        ++calls;
        return static_cast<int>(text.size()) * pointSize / 2;
    }
    int textHeightOfA(int pointSize) const override { return pointSize * 3 / 2; }
    mutable int calls = 0;
};

const FakeMeasurer kMeasurer;

} // namespace

TEST(TextFitting, StartingSizeAndDurationGrowWithLength) {
    EXPECT_EQ(kDisplaySizeTable[StartingSizePosition(10) - 1], 144);
    EXPECT_EQ(DisplayDurationMilliseconds(10), 1000);
    EXPECT_EQ(kDisplaySizeTable[StartingSizePosition(19) - 1], 144);
    EXPECT_EQ(kDisplaySizeTable[StartingSizePosition(20) - 1], 128);
    EXPECT_EQ(DisplayDurationMilliseconds(19), 1000);
    EXPECT_EQ(DisplayDurationMilliseconds(20), 1200);
    EXPECT_EQ(StartingSizePosition(269), 9);
    EXPECT_EQ(StartingSizePosition(270), 10);
    EXPECT_EQ(StartingSizePosition(100000), 10);
    EXPECT_EQ(DisplayDurationMilliseconds(99), 1800);
    EXPECT_EQ(DisplayDurationMilliseconds(100), 2000);
    EXPECT_EQ(TwipsToPixels(1000, 96), 67);
    EXPECT_EQ(TwipsToPixels(1440, 120), 120);
}

TEST(TextFitting, ShortTextIsOneCentredLineAt144Points) {
    const TextLayout layout = FitTextToSurface("0123456789", 1400, 900, 96, kMeasurer);
    ASSERT_TRUE(layout.fits);
    EXPECT_EQ(layout.pointSize, 144);
    EXPECT_EQ(layout.lines, QStringList{"0123456789"});
    EXPECT_EQ(layout.lineHeight, 216);
    EXPECT_EQ(layout.top, (900 - 216) / 2);
    EXPECT_EQ(layout.lineLefts, QList<int>{(1400 - 720) / 2});
}

TEST(TextFitting, NineteenAndTwentyCharactersStartAtDifferentSizes) {
    const TextLayout nineteen = FitTextToSurface(QString(19, u'x'), 3000, 900, 96, kMeasurer);
    const TextLayout twenty = FitTextToSurface(QString(20, u'x'), 3000, 900, 96, kMeasurer);
    EXPECT_EQ(nineteen.pointSize, 144);
    EXPECT_EQ(twenty.pointSize, 128);
}

TEST(TextFitting, LinesBreakAfterTheLastSpaceOrBeforeTheOverflowingCharacter) {
    // At 144 points six characters (432 px) fit in 500 px, seven (504 px) do not.
    EXPECT_EQ(WrapTextToWidth("aaaa bbbb", 500, 144, kMeasurer), QStringList({"aaaa ", "bbbb"}));
    EXPECT_EQ(WrapTextToWidth("abcdefghijklmno", 500, 144, kMeasurer),
              QStringList({"abcdef", "ghijkl", "mno"}));
    // A space found after a cut belongs to the next line only.
    EXPECT_EQ(WrapTextToWidth("ab cdefghijk lm", 500, 144, kMeasurer),
              QStringList({"ab ", "cdefgh", "ijk lm"}));
    // Paragraphs start new lines; an empty paragraph gives no line.
    EXPECT_EQ(WrapTextToWidth("ab\r\n\r\ncd\r\n", 500, 144, kMeasurer), QStringList({"ab", "cd"}));
    // A character wider than the surface stands alone instead of leaving empty lines.
    EXPECT_EQ(WrapTextToWidth("abc", 50, 144, kMeasurer), QStringList({"a", "b", "c"}));
}

TEST(TextFitting, EachLineIsCentredOnWhatIsVisible) {
    // 20 characters start at 128 points: 64 px each, nine fit in 600 px.
    const TextLayout layout = FitTextToSurface("abcd efgh ijklmnopqr", 600, 900, 96, kMeasurer);
    ASSERT_TRUE(layout.fits);
    EXPECT_EQ(layout.pointSize, 128);
    EXPECT_EQ(layout.lines, QStringList({"abcd ", "efgh ", "ijklmnopq", "r"}));
    // "abcd " is centred as "abcd": (600 - 4 x 64) / 2, not (600 - 5 x 64) / 2.
    EXPECT_EQ(layout.lineLefts, QList<int>({172, 172, 12, 268}));
}

TEST(TextFitting, TooManyLinesMoveToTheNextSmallerSize) {
    // Five lines: 5 x 216 and 5 x 192 exceed 900 - 67, 5 x 144 does not.
    const QString text = "a\r\nb\r\nc\r\nd\r\ne";
    const TextLayout layout = FitTextToSurface(text, 1400, 900, 96, kMeasurer);
    ASSERT_TRUE(layout.fits);
    EXPECT_EQ(layout.pointSize, 96);
    EXPECT_EQ(layout.lines.size(), 5);
    EXPECT_EQ(layout.top, (900 - 5 * 144) / 2);
}

TEST(TextFitting, HeightLimitIsTheSurfaceLess1000TwipsAtItsResolution) {
    // One 216 px line on a 283 px surface: exactly at the limit at 96 dpi (67 px margin), over it
    // at 192 dpi (133 px margin).
    EXPECT_EQ(FitTextToSurface("Hi", 1400, 283, 96, kMeasurer).pointSize, 144);
    EXPECT_EQ(FitTextToSurface("Hi", 1400, 283, 192, kMeasurer).pointSize, 96);
}

TEST(TextFitting, HugeTextIsTooBigAndEmptyTextFitsWithNoLines) {
    QString huge;
    while (huge.size() < 10000)
        huge += QStringLiteral("word ");
    const TextLayout big = FitTextToSurface(huge, 640, 480, 96, kMeasurer);
    EXPECT_FALSE(big.fits);
    EXPECT_TRUE(big.lines.isEmpty());

    const TextLayout empty = FitTextToSurface(QString(), 640, 480, 96, kMeasurer);
    EXPECT_TRUE(empty.fits);
    EXPECT_EQ(empty.pointSize, 144);
    EXPECT_TRUE(empty.lines.isEmpty());
    EXPECT_EQ(DisplayDurationMilliseconds(0), 1000);
}
