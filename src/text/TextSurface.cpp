#include "text/TextSurface.h"

#include <QPainter>

#include <cmath>

namespace cq {

QFont DisplayFont(int pointSize) {
    QFont font(QString::fromLatin1(kDisplayFontFamily));
    font.setPointSize(pointSize);
    font.setStyleHint(QFont::Serif);
    return font;
}

FontTextMeasurer::FontTextMeasurer(QPaintDevice* device) : m_device(device) {}

const QFontMetrics& FontTextMeasurer::metrics(int pointSize) const {
    auto it = m_metrics.find(pointSize);
    if (it == m_metrics.end())
        it = m_metrics.insert(pointSize, QFontMetrics(DisplayFont(pointSize), m_device));
    return *it;
}

int FontTextMeasurer::textWidth(const QString& text, int pointSize) const {
    return metrics(pointSize).horizontalAdvance(text);
}

int FontTextMeasurer::textHeightOfA(int pointSize) const {
    return metrics(pointSize).height();
}

QImage MakeTextSurface(int width, int height, double dotsPerInch) {
    QImage surface(std::max(1, width), std::max(1, height), QImage::Format_RGB32);
    const int dotsPerMeter = static_cast<int>(std::lround(dotsPerInch / 0.0254));
    surface.setDotsPerMeterX(dotsPerMeter);
    surface.setDotsPerMeterY(dotsPerMeter);
    surface.fill(Qt::black);
    return surface;
}

TextLayout PreviewTextOnSurface(QImage& surface, const QString& text) {
    surface.fill(Qt::black);
    const FontTextMeasurer measurer(&surface);
    TextLayout layout =
        FitTextToSurface(text, surface.width(), surface.height(), surface.logicalDpiY(), measurer);
    if (!layout.fits)
        return layout;
    QPainter painter(&surface);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(Qt::white);
    painter.setFont(DisplayFont(layout.pointSize));
    const int ascent = painter.fontMetrics().ascent();
    for (qsizetype i = 0; i < layout.lines.size(); ++i)
        painter.drawText(layout.lineLefts.at(i),
                         layout.top + static_cast<int>(i) * layout.lineHeight + ascent,
                         layout.lines.at(i));
    return layout;
}

} // namespace cq
