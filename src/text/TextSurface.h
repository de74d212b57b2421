#pragma once

#include "text/TextFitting.h"

#include <QFontMetrics>
#include <QHash>
#include <QImage>
#include <QString>

class QPaintDevice;

namespace cq {

// The display font: the metric twin of the classic serif face.
inline constexpr char kDisplayFontFamily[] = "Liberation Serif";

QFont DisplayFont(int pointSize);

// Measures with the display font as the given device (image or widget) resolves points.
class FontTextMeasurer : public TextMeasurer {
public:
    explicit FontTextMeasurer(QPaintDevice* device);

    int textWidth(const QString& text, int pointSize) const override;
    int textHeightOfA(int pointSize) const override;

private:
    const QFontMetrics& metrics(int pointSize) const;

    QPaintDevice* m_device;
    mutable QHash<int, QFontMetrics> m_metrics;
};

// A black picture of the given size at the given resolution, ready to carry a text.
QImage MakeTextSurface(int width, int height, double dotsPerInch);

// Clears the surface to black and, when the text fits, prints its lines in white, each centred,
// the block centred vertically. The returned layout says whether it fitted.
TextLayout PreviewTextOnSurface(QImage& surface, const QString& text);

} // namespace cq
