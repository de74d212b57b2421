#pragma once

#include <QAccessibleValueInterface>
#include <QAccessibleWidget>

namespace cq {

class VolumeSlider;

// Screen readers see a volume slider as a slider whose value is the level, 0 to 100.
class VolumeSliderAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit VolumeSliderAccessible(QWidget* widget);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text t) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    VolumeSlider* slider() const;
};

// Registers the factory once; safe to call again.
void InstallVolumeSliderAccessibility();

} // namespace cq
