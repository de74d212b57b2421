#include "text/TextSurface.h"

#include <QFontInfo>
#include <QImage>

#include <gtest/gtest.h>

using namespace cq;

namespace {
// The box around every pixel that is not black.
QRect LitBox(const QImage& image) {
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) != 0)
                box |= QRect(x, y, 1, 1);
    return box;
}
} // namespace

TEST(TextSurface, DisplayFontIsTheInstalledSerif) {
    EXPECT_EQ(QFontInfo(DisplayFont(12)).family(), QString::fromLatin1(kDisplayFontFamily));
}

TEST(TextSurface, ShortTextIsDrawnWhiteAndCentredAtFullSize) {
    QImage surface = MakeTextSurface(1400, 900, 96);
    const TextLayout layout = PreviewTextOnSurface(surface, "Hello");
    ASSERT_TRUE(layout.fits);
    EXPECT_EQ(layout.pointSize, 144);
    const QRect lit = LitBox(surface);
    ASSERT_FALSE(lit.isEmpty());
    EXPECT_NEAR(lit.left(), surface.width() - 1 - lit.right(), 12);
    EXPECT_NEAR(lit.center().y(), surface.height() / 2, 40);
    // 144 points at 96 dpi: letters about 190 px high with their tails.
    EXPECT_GT(lit.height(), 100);
    EXPECT_EQ(surface.pixel(lit.center().x(), 5) & 0xFFFFFF, 0u);
}

TEST(TextSurface, RealFontWrapsLongTextWithinTheSurface) {
    const QString text = QStringLiteral(
        "The quick brown fox jumps over the lazy dog while the studio records every word");
    QImage surface = MakeTextSurface(640, 480, 96);
    const TextLayout layout = PreviewTextOnSurface(surface, text);
    ASSERT_TRUE(layout.fits);
    EXPECT_GT(layout.lines.size(), 1);
    EXPECT_EQ(layout.lines.join(QString()), text);
    const FontTextMeasurer measurer(&surface);
    for (const QString& line : layout.lines)
        EXPECT_LE(measurer.textWidth(line.trimmed(), layout.pointSize), 640) << line.toStdString();
    EXPECT_LE(static_cast<int>(layout.lines.size()) * layout.lineHeight, 480 - 67);
}

TEST(TextSurface, TenThousandCharactersAreTooBigAndLeaveTheSurfaceBlack) {
    QString huge;
    while (huge.size() < 10000)
        huge += QStringLiteral("word ");
    QImage surface = MakeTextSurface(640, 480, 96);
    EXPECT_FALSE(PreviewTextOnSurface(surface, huge).fits);
    EXPECT_TRUE(LitBox(surface).isEmpty());
}
