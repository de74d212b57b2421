// The boxes of an MP4 piece or result, read to check and measure what the render made.
#include "FuzzSupport.h"

#include "render/Mp4Contents.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const fuzz::ScratchFile file("piece.mp4");
    if (!file.write(fuzz::InputBytes(data, size)))
        fuzz::Broken("the scratch file cannot be written");
    const Mp4Contents mp4 = ReadMp4Contents(file.path());
    mp4.durationMs("vide");
    mp4.durationMs("soun");
    fuzz::Check(mp4.complete == mp4.problem.isEmpty(), "a complete MP4 file names a problem");
    return 0;
}
