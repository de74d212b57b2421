// System/TTS.txt, the list of texts: read for the texts tab and for the whole-list editor. What
// the editor shows must save back to the same entries.
#include "FuzzSupport.h"

#include "text/TextListFile.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzz::InputBytes(data, size);
    const QStringList entries = DecodeTextList(bytes);
    DecodeTextListForEditing(bytes);
    fuzz::Check(DecodeTextList(EncodeTextList(entries)) == entries,
                "the texts read do not save back as they were");
    return 0;
}
