#include "app/CommandLine.h"
#include "platform/QuickExit.h"

int main(int argc, char** argv) {
    const int code = cq::RunStudio(argc, argv);
    // The studio has closed its windows, ended its tools and emptied its work folder by now.
    // What is left are the sound library's own objects, torn down with the program's statics:
    // PulseAudio's client can abort there while its main loop is still busy, which would turn a
    // finished run into a crash. The work is done, so the program leaves without them.
    cq::QuickExit(code);
}
