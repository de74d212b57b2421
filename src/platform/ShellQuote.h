#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// Quotes one word for /bin/sh with single quotes; a ' inside becomes '\''. Nothing inside the
// quotes is live for the shell, so no file name can run a command.
QString ShellQuote(const QString& word);

// The words quoted one by one and joined by blanks: one script line.
QString ShellCommandLine(const QStringList& words);

} // namespace cq
