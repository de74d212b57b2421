// SRT and WebVTT files as the project's and the take's captions are read; what was read must be
// written as files that read back whole.
#include "FuzzSupport.h"

#include "captions/SubtitleFiles.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ReadCues read = ReadSubtitles(fuzz::InputBytes(data, size));
    const ReadCues srt = ReadSubtitles(WriteSrt(read.cues));
    fuzz::Check(srt.problem.isEmpty(), "an SRT file the studio wrote has unreadable cues");
    const ReadCues vtt = ReadSubtitles(WriteVtt(read.cues));
    fuzz::Check(vtt.problem.isEmpty(), "a WebVTT file the studio wrote has unreadable cues");
    fuzz::Check(srt.cues.size() == vtt.cues.size(), "SRT and WebVTT hold different cues");
    return 0;
}
