#pragma once

#include <QString>

namespace cq {

// Starts a command line without waiting for it; the words are split the way a shell would
// split them (quotes group words), but no shell runs. The program lives on its own, through
// ToolRunner::startDetached. Returns the process id, or 0 on failure.
qint64 StartProcess(const QString& commandLine);

// Starts the command line if it is not empty, then clears it. Does not wait.
void RunCommandLine(QString& commandLine);

} // namespace cq
