#include "render/FullDisk.h"

#include <QStorageInfo>

#include <cerrno>
#include <cstring>

namespace cq {

namespace {
// Less than this left on the disk cannot hold even a still's piece.
constexpr qint64 kTooLittleBytes = 256 * 1024;
} // namespace

QString FullDiskErrorIn(const QString& toolErrorText, const QString& folder) {
    // The tools print the system's own words for the error (strerror), as this process does.
    for (int error : {ENOSPC, EFBIG, EDQUOT}) {
        if (toolErrorText.contains(QString::fromLocal8Bit(std::strerror(error))))
            return QStringLiteral("A write into \"%1\" failed for lack of space (%2): the disk is "
                                  "full or the file may not grow larger. Make room and render "
                                  "again.")
                .arg(folder, QString::fromLocal8Bit(std::strerror(error)));
    }
    return {};
}

QString FullDiskProblem(const QString& toolErrorText, const QString& folder) {
    const QString said = FullDiskErrorIn(toolErrorText, folder);
    if (!said.isEmpty())
        return said;
    const QStorageInfo disk(folder);
    if (disk.isValid() && disk.bytesAvailable() >= 0 && disk.bytesAvailable() < kTooLittleBytes)
        return QStringLiteral("The disk of \"%1\" is full (%2 KB free). Make room and render "
                              "again.")
            .arg(folder)
            .arg(disk.bytesAvailable() / 1024);
    return {};
}

} // namespace cq
