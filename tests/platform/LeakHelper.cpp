// Loses memory (given "leak") and leaves through cq::QuickExit with exit code 3, as the studio and
// the test programs leave.
#include "platform/QuickExit.h"

#include <cstring>

namespace {
int* volatile g_lost = nullptr;
}

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "leak") == 0) {
        g_lost = new int[64];
        g_lost = nullptr;
    }
    cq::QuickExit(3);
}
