#pragma once

#include <QString>

namespace cq {

// The PRETTY_NAME of /etc/os-release ("Debian GNU/Linux 12 (bookworm)"), or "Unknown".
QString GetOSVersionName();
// There is no Windows folder here; kept so callers read the same, always empty.
QString GetWindowsFolder();

} // namespace cq
