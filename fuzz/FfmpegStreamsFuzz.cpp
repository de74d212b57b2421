// ffmpeg's description of an input on stderr, read to learn whether a video has a sound track.
#include "FuzzSupport.h"

#include "render/MediaFileInfo.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    GetFileInfoVars(QString::fromUtf8(fuzz::InputBytes(data, size)));
    return 0;
}
