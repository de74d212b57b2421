#pragma once

#include <QString>

namespace cq {

// The playing time of a PCM WAV file from its format and data chunks, in milliseconds; a data
// chunk whose size was never filled in counts up to the end of the file. -1 when the file is no
// WAV that can be read.
qint64 WavDurationMs(const QString& fileSpec);

} // namespace cq
