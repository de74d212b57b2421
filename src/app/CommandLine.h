#pragma once

namespace cq {

// The exit code of a studio that ended because another one has its application folder open.
inline constexpr int kFolderInUseExitCode = 3;

// The whole program: chooses the application folder, then runs the check, a command-line
// render or the window.
int RunStudio(int argc, char** argv);

} // namespace cq
