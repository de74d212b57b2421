// The files through which the studio hands a clip to the Emailer: the message and the
// attachment list, inverted bytes. What is read must hand over again unchanged.
#include "FuzzSupport.h"

#include "share/HandOverFiles.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text = DecodeHandOverBytes(fuzz::InputBytes(data, size));
    fuzz::Check(DecodeHandOverBytes(EncodeHandOverText(text)) == text,
                "a hand-over text does not read back as it was written");
    return 0;
}
