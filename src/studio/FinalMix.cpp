#include "studio/FinalMix.h"

#include "studio/AppPaths.h"

#include <QDateTime>
#include <QFileInfo>

namespace cq {

QString FinalMixFileSpec(const AppPaths& paths, RenderFormat format) {
    return format == RenderFormat::Mp4 ? paths.gstrFinalMixMP4FileSpec
                                       : paths.gstrFinalMixAVIFileSpec;
}

QString LatestFinalMix(const AppPaths& paths) {
    const QFileInfo avi(paths.gstrFinalMixAVIFileSpec);
    const QFileInfo mp4(paths.gstrFinalMixMP4FileSpec);
    if (!mp4.isFile())
        return avi.filePath();
    if (!avi.isFile() || mp4.lastModified() > avi.lastModified())
        return mp4.filePath();
    return avi.filePath();
}

} // namespace cq
