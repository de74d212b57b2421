// A WAV file's header as the render, Open Project and the command line read it, and the repair of
// the header of a take's voice on restore. A repaired file must read as sound.
#include "FuzzSupport.h"

#include "platform/WavFormat.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const fuzz::ScratchFile file("voice.wav");
    if (!file.write(fuzz::InputBytes(data, size)))
        fuzz::Broken("the scratch file cannot be written");
    const WavInfo before = ReadWavInfo(file.path());
    QString error;
    const bool repaired = RepairWavLength(file.path(), &error);
    fuzz::Check(repaired == before.ok(), "the repair disagrees with the reader on the file");
    if (!repaired)
        return 0;
    const WavInfo after = ReadWavInfo(file.path());
    fuzz::Check(after.ok(), "a repaired WAV file cannot be read");
    fuzz::Check(after.dataBytes >= before.dataBytes || before.dataBytes > 0xFFFFFFFFll,
                "the repair lost samples");
    return 0;
}
