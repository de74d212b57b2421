#pragma once

class QWidget;

namespace cq {

// Places the window in the middle of the screen it is on.
void CenterForm(QWidget* window);

} // namespace cq
