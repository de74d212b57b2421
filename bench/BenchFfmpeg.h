#pragma once

#include <QString>
#include <QStringList>

namespace cq::bench {

// The ffmpeg the benches make their inputs with and measure against, found as the studio finds
// it. Empty, with a line on stderr, when it is not installed.
QString LocateBenchFfmpeg();

// Runs ffmpeg quietly with the arguments; false, with its error on stderr, when it fails.
bool RunFfmpeg(const QString& ffmpeg, const QStringList& arguments);

} // namespace cq::bench
