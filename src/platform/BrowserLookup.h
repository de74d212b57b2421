#pragma once

#include <QString>

namespace cq {

// The desktop entry (or $BROWSER command) that would open a web page, or an empty text when
// nothing is registered. Asks xdg-settings / xdg-mime, as xdg-open itself would.
QString FindWebBrowserHandler();

} // namespace cq
