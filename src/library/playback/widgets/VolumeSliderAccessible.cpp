#include "library/playback/widgets/VolumeSliderAccessible.h"

#include "library/playback/widgets/VolumeSlider.h"

namespace cq {

VolumeSliderAccessible::VolumeSliderAccessible(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::Slider) {}

VolumeSlider* VolumeSliderAccessible::slider() const {
    return static_cast<VolumeSlider*>(widget());
}

void* VolumeSliderAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString VolumeSliderAccessible::text(QAccessible::Text t) const {
    if (t == QAccessible::Value)
        return QString::number(slider()->level());
    return QAccessibleWidget::text(t);
}

QVariant VolumeSliderAccessible::currentValue() const {
    return slider()->level();
}

void VolumeSliderAccessible::setCurrentValue(const QVariant& value) {
    VolumeSlider* s = slider();
    s->moveKnobTo(KnobLeftForLevel(value.toInt(), s->travel()));
}

QVariant VolumeSliderAccessible::maximumValue() const {
    return kLevelScale;
}

QVariant VolumeSliderAccessible::minimumValue() const {
    return 0;
}

QVariant VolumeSliderAccessible::minimumStepSize() const {
    return 1;
}

namespace {
QAccessibleInterface* volumeSliderFactory(const QString& className, QObject* object) {
    if (className == QLatin1String("cq::VolumeSlider") && object && object->isWidgetType())
        return new VolumeSliderAccessible(static_cast<QWidget*>(object));
    return nullptr;
}
} // namespace

void InstallVolumeSliderAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(volumeSliderFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace cq
