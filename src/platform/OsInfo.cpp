#include "platform/OsInfo.h"

#include "platform/TextFiles.h"

#include <QStringList>

namespace cq {

QString GetOSVersionName() {
    const QString text = ReadFileToString(QStringLiteral("/etc/os-release"));
    for (const QString& line : text.split(u'\n')) {
        if (!line.startsWith(QStringLiteral("PRETTY_NAME=")))
            continue;
        QString value = line.mid(12).trimmed();
        if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\''))
            value = value.mid(1, value.size() - 2);
        if (!value.isEmpty())
            return value;
    }
    return QStringLiteral("Unknown");
}

QString GetWindowsFolder() {
    return {};
}

} // namespace cq
