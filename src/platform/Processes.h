#pragma once

#include <QString>

namespace cq {

// True when no running process has this name (case ignored). A process counts by its
// /proc/PID/comm name and by the base name of its executable in /proc/PID/cmdline.
bool IsProcessFinishedRunning(const QString& processName);

// Starts a command line without waiting for it; the words are split the way a shell would
// split them (quotes group words), but no shell runs. Returns the process id, or 0 on failure.
qint64 StartProcess(const QString& commandLine);

// Starts the command line if it is not empty, then clears it. Does not wait.
void RunCommandLine(QString& commandLine);

} // namespace cq
