#pragma once

#include <QString>

#include <cstdio>

namespace cq {

// Writes text to a terminal stream as UTF-8 in one piece and flushes it, so that a line of ours
// is never split by what the tools we started write to the same terminal.
void PrintTo(FILE* stream, const QString& text);

} // namespace cq
