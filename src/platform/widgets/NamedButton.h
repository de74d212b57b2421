#pragma once

#include <QString>

class QPushButton;
class QWidget;

namespace cq {

// A push button with its caption, the name that tests and the accessibility tree know it by,
// and the tooltip that describes it.
QPushButton* NamedButton(const QString& caption, const QString& objectName, const QString& toolTip,
                         QWidget* parent);

} // namespace cq
