// The chunks of an AVI piece or result, walked to check and measure what the render made.
#include "FuzzSupport.h"

#include "render/AviContents.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const fuzz::ScratchFile file("piece.avi");
    if (!file.write(fuzz::InputBytes(data, size)))
        fuzz::Broken("the scratch file cannot be written");
    const AviContents avi = ReadAviContents(file.path());
    avi.durationMs("vids");
    avi.durationMs("auds");
    fuzz::Check(avi.complete == avi.problem.isEmpty(), "a complete AVI file names a problem");
    return 0;
}
