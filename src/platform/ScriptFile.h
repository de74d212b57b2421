#pragma once

#include <QString>

namespace cq {

// Writes a /bin/sh script: the caller's lines with LF line ends (a CR would become part of the
// last word under sh), replacing any earlier script. Returns false when it cannot be written,
// or when the script holds a NUL, which no quoting can carry through sh.
bool SaveScriptToFile(const QString& script, const QString& fileSpec);

} // namespace cq
