#include "BenchFfmpeg.h"

#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"

#include <cstdio>

namespace cq::bench {

QString LocateBenchFfmpeg() {
    const QString path = LocateTool({}, "ffmpeg", "ffmpeg").path;
    if (path.isEmpty())
        std::fprintf(stderr, "ffmpeg is not installed\n");
    return path;
}

bool RunFfmpeg(const QString& ffmpeg, const QStringList& arguments) {
    ToolRunner runner;
    const RunResult r =
        runner.runProgram(ffmpeg, QStringList{"-nostdin", "-v", "error"} + arguments);
    if (!r.ok())
        std::fprintf(stderr, "ffmpeg failed: %s\n", qPrintable(r.errorText));
    return r.ok();
}

} // namespace cq::bench
