#pragma once

namespace cq {

// The whole program: chooses the application folder, then runs the check, a command-line
// render or the window.
int RunStudio(int argc, char** argv);

} // namespace cq
