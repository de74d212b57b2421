#pragma once

#include <sys/resource.h>

#include <csignal>

namespace cq::test {

// A disk that is full past a given size, for this process: while it lives, a write that would make
// any file larger than `bytes` fails with EFBIG (the signal such a write raises is ignored, as the
// studio ignores it). The old limit comes back with the end of the scope.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit small = m_old;
        small.rlim_cur = bytes;
        m_set = ::setrlimit(RLIMIT_FSIZE, &small) == 0;
    }
    ~FileSizeLimit() { lift(); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    bool isSet() const { return m_set; }
    void lift() {
        if (m_set)
            ::setrlimit(RLIMIT_FSIZE, &m_old);
        m_set = false;
    }

private:
    rlimit m_old{};
    bool m_set = false;
};

} // namespace cq::test
