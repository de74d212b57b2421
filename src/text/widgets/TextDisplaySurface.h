#pragma once

#include "text/TextFitting.h"

#include <QImage>
#include <QWidget>

class QMessageBox;

namespace cq {

// "Your message is too big." with an OK button: made (for the caller to show), or shown and
// waited for.
QMessageBox* MakeMessageTooBig(QWidget* parent);
void ShowMessageTooBig(QWidget* parent);

// The drawing surface of a text: black, the text fitted and centred in white. It keeps the
// drawn picture so it can be saved as it was seen.
class TextDisplaySurface : public QWidget {
    Q_OBJECT
public:
    explicit TextDisplaySurface(QWidget* parent = nullptr);

    // Clears the surface and draws the text at the size of the widget; false when it is too big
    // (the surface is then left black).
    bool Preview(const QString& text);
    void clear();

    const QImage& picture() const { return m_picture; }
    const TextLayout& layout() const { return m_layout; }
    // Writes the drawn picture as a BMP file.
    bool savePicture(const QString& fileSpec) const;

    QSize sizeHint() const override { return {320, 240}; }

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QImage m_picture;
    TextLayout m_layout;
};

} // namespace cq
