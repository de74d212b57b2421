#include "text/widgets/TextDisplaySurface.h"

#include "text/TextSurface.h"

#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>

#include <memory>

namespace cq {

QMessageBox* MakeMessageTooBig(QWidget* parent) {
    auto* box =
        new QMessageBox(QMessageBox::Information, QStringLiteral("Clipquill"),
                        QStringLiteral("Your message is too big."), QMessageBox::Ok, parent);
    box->setObjectName(QStringLiteral("msgTooBig"));
    return box;
}

void ShowMessageTooBig(QWidget* parent) {
    std::unique_ptr<QMessageBox> box(MakeMessageTooBig(parent));
    box->exec();
}

TextDisplaySurface::TextDisplaySurface(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picDisplay"));
    setAccessibleName(QStringLiteral("Text display"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(16, 16);
}

bool TextDisplaySurface::Preview(const QString& text) {
    m_picture = MakeTextSurface(width(), height(), logicalDpiY());
    m_layout = PreviewTextOnSurface(m_picture, text);
    setAccessibleDescription(m_layout.fits ? m_layout.lines.join(u' ') : QString());
    update();
    return m_layout.fits;
}

void TextDisplaySurface::clear() {
    m_picture = MakeTextSurface(width(), height(), logicalDpiY());
    m_layout = TextLayout{};
    setAccessibleDescription(QString());
    update();
}

bool TextDisplaySurface::savePicture(const QString& fileSpec) const {
    return !fileSpec.trimmed().isEmpty() && !m_picture.isNull() && m_picture.save(fileSpec, "BMP");
}

void TextDisplaySurface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (!m_picture.isNull())
        painter.drawImage(0, 0, m_picture);
}

void TextDisplaySurface::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit clicked();
    QWidget::mousePressEvent(event);
}

} // namespace cq
