#include "platform/widgets/NamedButton.h"

#include <QPushButton>

namespace cq {

QPushButton* NamedButton(const QString& caption, const QString& objectName, const QString& toolTip,
                         QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(objectName);
    button->setToolTip(toolTip);
    return button;
}

} // namespace cq
