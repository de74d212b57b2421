#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace cq {

// The desktop entry (or $BROWSER command) that would open a web page, or an empty text when
// nothing is registered. Reads the desktop's own association files the way xdg-open's lookup
// does (mimeapps.list, defaults.list, mimeinfo.cache under the XDG folders), then the system's
// browser alternatives on PATH. Only files are read: no program runs, nothing waits.
QString FindWebBrowserHandler(
    const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

} // namespace cq
