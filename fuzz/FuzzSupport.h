#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

// What the harnesses share. Each harness defines LLVMFuzzerTestOneInput and hands the bytes to
// the very function the studio calls on such bytes; libFuzzer or the replay program drives it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace cq::fuzz {

// The input without a copy, so that the sanitizer sees a read past its end.
QByteArray InputBytes(const uint8_t* data, size_t size);

// A parser's promise that the input broke: names it and aborts, which libFuzzer reports as a
// fault and keeps the input.
[[noreturn]] void Broken(const char* what);
inline void Check(bool holds, const char* what) {
    if (!holds)
        Broken(what);
}

// A file of this process for the readers that take a path: in memory (/dev/shm) where the
// system has it, so that a run stays fast. Removed when the object goes.
class ScratchFile {
public:
    explicit ScratchFile(const char* name);
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    // Replaces the file's contents with the bytes; false when it cannot.
    bool write(const QByteArray& bytes) const;
    QString path() const { return m_path; }

private:
    QString m_path;
};

} // namespace cq::fuzz
