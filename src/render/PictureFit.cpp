#include "render/PictureFit.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>

#include <cmath>

namespace cq {

namespace {
bool fail(QString* error, const QString& text) {
    if (error)
        *error = text;
    return false;
}
} // namespace

bool PrepareFittedFrame(const QString& picture, const PicSegment& segment,
                        const QString& blackBitmap, QString* error) {
    QImageReader reader(picture);
    reader.setAutoTransform(true);
    QImage source = reader.read();
    if (source.isNull())
        return fail(error, QStringLiteral("The picture \"%1\" cannot be read: %2")
                               .arg(picture, reader.errorString()));
    if (segment.needsBitmapCopy && !source.save(segment.bitmapCopy, "BMP"))
        return fail(error, QStringLiteral("\"%1\" cannot be written.").arg(segment.bitmapCopy));

    const FourByThreeFit fit = FitToFourByThree(source.width(), source.height());
    QImage frame;
    if (fit.exact) {
        frame = source;
    } else {
        frame = QImage(int(std::ceil(fit.canvas.width())), int(std::ceil(fit.canvas.height())),
                       QImage::Format_RGB32);
        frame.fill(Qt::black);
        frame.save(blackBitmap, "BMP");
        QPainter painter(&frame);
        painter.drawImage(QPointF(std::floor(fit.offset.x()), std::floor(fit.offset.y())), source);
    }
    if (!frame.save(segment.fittedFrame, "BMP"))
        return fail(error, QStringLiteral("\"%1\" cannot be written.").arg(segment.fittedFrame));
    return true;
}

} // namespace cq
