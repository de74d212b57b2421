#pragma once

#include "captions/CaptionCue.h"

#include <ostream>

namespace cq {

// Failed comparisons of cues show their times and text instead of their bytes.
inline void PrintTo(const CaptionCue& cue, std::ostream* os) {
    *os << cue.startMs << "-" << cue.endMs << " \"" << cue.text.toStdString() << '"';
}

} // namespace cq
