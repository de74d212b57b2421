// The journal of a take's clicks, read back when the studio restores a take after a crash.
#include "FuzzSupport.h"

#include "take/TakeJournal.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ReadJournalBytes(fuzz::InputBytes(data, size), QStringLiteral("/fuzz/ClipquillTempFiles"));
    return 0;
}
