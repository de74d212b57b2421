// System/MMSServerList.txt: read for the carrier choice, and rewritten when a carrier is added.
// An added carrier must be among the carriers read afterwards, and no other line may change.
#include "FuzzSupport.h"

#include "platform/TextFiles.h"
#include "share/CarrierList.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes = fuzz::InputBytes(data, size);
    const QList<Carrier> before = ParseCarrierFile(bytes);
    fuzz::Check(before.size() <= CarrierFileCapacity(), "more carriers than the table holds");
    static const fuzz::ScratchFile file("MMSServerList.txt");
    if (!file.write(bytes))
        fuzz::Broken("the scratch file cannot be written");
    const Carrier added{QStringLiteral("Fuzz Mobile"), QStringLiteral("mms.fuzz.example")};
    if (!AddCarrierToFile(file.path(), added.name, added.domain).isEmpty())
        return 0;
    const QList<Carrier> after = ParseCarrierFile(ReadFileToBytes(file.path()));
    fuzz::Check(after.contains(added), "an added carrier is not in the list");
    fuzz::Check(after.size() == before.size() + 1, "adding a carrier changed the others");
    return 0;
}
