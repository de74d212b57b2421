#pragma once

#include <QString>

class QWidget;

namespace cq {

// Opens the address in the user's web browser; says so in a message box when no browser is
// registered ("Could not find associated Browser") or when it could not be started.
void OpenURLInBrowser(const QString& address, QWidget* owner);

} // namespace cq
