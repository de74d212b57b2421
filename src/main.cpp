#include "app/CommandLine.h"

int main(int argc, char** argv) {
    return cq::RunStudio(argc, argv);
}
