// The normal build's driver of a harness: feeds it every file of the folders named on the command
// line, so that the corpus and every input that once found a fault are parsed by each test run.
#include "FuzzSupport.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <sys/resource.h>

namespace {

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CQ_REPLAY_UNDER_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CQ_REPLAY_UNDER_ASAN 1
#endif

// The fuzzer counts a parser that asks for more than a gigabyte as a fault; so does the replay,
// by a limit on the address space (the address sanitizer maps terabytes of its own, so it is
// left without one).
void limitMemory() {
#ifndef CQ_REPLAY_UNDER_ASAN
    const rlim_t limit = rlim_t(1536) << 20;
    rlimit current{};
    if (getrlimit(RLIMIT_AS, &current) == 0 && current.rlim_cur > limit) {
        current.rlim_cur = limit;
        setrlimit(RLIMIT_AS, &current);
    }
#endif
}

} // namespace

int main(int argc, char** argv) {
    limitMemory();
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        // A target without regressions has no folder for them.
        const QStringList names = folder.entryList(QDir::Files | QDir::Hidden, QDir::Name);
        for (const QString& name : names) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            const QByteArray bytes = file.readAll();
            std::fprintf(stderr, "replaying %s\n", qPrintable(file.fileName()));
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()),
                                   size_t(bytes.size()));
            ++replayed;
        }
    }
    if (replayed == 0) {
        std::fprintf(stderr, "no inputs found in the folders given\n");
        return 1;
    }
    std::fprintf(stderr, "%d inputs replayed without a fault\n", replayed);
    return 0;
}
