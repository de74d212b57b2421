#pragma once

#include "render/RenderInputs.h"

#include <QString>

namespace cq {

// Why a render must not start at all because of where its result goes; empty when it may. Checked
// before anything runs, so that a refusal costs nothing and destroys nothing:
// - the result would land on a file the render reads (an item, the voice, a text picture, the
//   timeline or the captions it was made from), links resolved;
// - a file that is write-protected, or no file at all (a folder, a FIFO), stands at the result's
//   name: the result replaces it by a rename, which ignores the file's own protection;
// - the result's folder (or the deepest existing folder above it) cannot be written;
// - captions are asked for, and X.srt or X.vtt beside the result X were not written by the studio.
QString RenderOutputProblem(const RenderInputs& in);

// Every file the render reads: the rows' files, the voice, the black picture and the files it was
// made from (sourceFiles).
QStringList RenderReadFiles(const RenderInputs& in);

} // namespace cq
