#include "library/playback/widgets/VolumeSlider.h"

#include "library/playback/widgets/VolumeSliderAccessible.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace cq {

namespace {
constexpr int kKnobWidth = 10;
}

VolumeSliderKnob::VolumeSliderKnob(QWidget* parent) : QWidget(parent) {
    setCursor(Qt::SizeHorCursor);
}

void VolumeSliderKnob::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette pal = palette();
    painter.fillRect(rect(), pal.button());
    painter.setPen(pal.light().color());
    painter.drawLine(0, 0, width() - 1, 0);
    painter.drawLine(0, 0, 0, height() - 1);
    painter.setPen(pal.shadow().color());
    painter.drawLine(width() - 1, 0, width() - 1, height() - 1);
    painter.drawLine(0, height() - 1, width() - 1, height() - 1);
}

void VolumeSliderKnob::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit pressed(qRound(event->globalPosition().x()));
}

void VolumeSliderKnob::mouseMoveEvent(QMouseEvent* event) {
    emit moved(qRound(event->globalPosition().x()));
}

void VolumeSliderKnob::mouseReleaseEvent(QMouseEvent*) {
    emit released();
}

VolumeSlider::VolumeSlider(int index, QWidget* parent) : QWidget(parent), m_index(index) {
    InstallVolumeSliderAccessibility();
    setObjectName(QStringLiteral("picSlider_%1").arg(index));
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Volume"));
    m_knob = new VolumeSliderKnob(this);
    m_knob->setObjectName(QStringLiteral("picSliderLevel_%1").arg(index));
    connect(m_knob, &VolumeSliderKnob::pressed, this, [this] { m_drag.press(); });
    connect(m_knob, &VolumeSliderKnob::moved, this, [this](int globalX) {
        if (m_drag.dragging())
            moveKnobTo(m_drag.move(globalX, m_knobLeft, travel()));
    });
    connect(m_knob, &VolumeSliderKnob::released, this, [this] { m_drag.release(); });
    placeKnob();
    updateToolTip();
}

int VolumeSlider::travel() const {
    return SliderTravel(width(), kKnobWidth);
}

void VolumeSlider::setLevel(int level) {
    m_level = std::clamp(level, 0, kLevelScale);
    m_knobLeft = KnobLeftForLevel(m_level, travel());
    placeKnob();
    updateToolTip();
}

void VolumeSlider::moveKnobTo(int knobLeft) {
    const int clamped = std::clamp(knobLeft, 0, travel());
    if (clamped == m_knobLeft)
        return;
    m_knobLeft = clamped;
    m_level = level();
    placeKnob();
    updateToolTip();
    QAccessibleValueChangeEvent change(this, m_level);
    QAccessible::updateAccessibility(&change);
    emit levelChanged(m_index, m_level);
    emit masterValueChanged(masterValue());
}

void VolumeSlider::placeKnob() {
    m_knob->setGeometry(m_knobLeft, 2, kKnobWidth, std::max(4, height() - 4));
}

void VolumeSlider::updateToolTip() {
    const QString tip = QStringLiteral("Volume: %1").arg(m_level);
    m_knob->setToolTip(tip);
    setToolTip(tip);
    setAccessibleDescription(tip);
}

void VolumeSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette pal = palette();
    painter.fillRect(rect(), pal.base());
    painter.setPen(pal.mid().color());
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    // The filled part shows the level at a glance.
    painter.fillRect(QRect(1, height() / 2 - 2, m_knobLeft, 4), pal.highlight());
    if (hasFocus()) {
        painter.setPen(QPen(pal.highlight().color(), 1, Qt::DotLine));
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }
}

void VolumeSlider::resizeEvent(QResizeEvent*) {
    m_knobLeft = KnobLeftForLevel(m_level, travel());
    placeKnob();
}

void VolumeSlider::keyPressEvent(QKeyEvent* event) {
    const int unit = std::max(1, travel() / kLevelScale);
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        moveKnobTo(m_knobLeft - unit);
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        moveKnobTo(m_knobLeft + unit);
        break;
    case Qt::Key_PageDown:
        moveKnobTo(m_knobLeft - kMaxKnobStep);
        break;
    case Qt::Key_PageUp:
        moveKnobTo(m_knobLeft + kMaxKnobStep);
        break;
    case Qt::Key_Home:
        moveKnobTo(0);
        break;
    case Qt::Key_End:
        moveKnobTo(travel());
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void VolumeSlider::mouseReleaseEvent(QMouseEvent* event) {
    m_drag.release();
    QWidget::mouseReleaseEvent(event);
}

} // namespace cq
