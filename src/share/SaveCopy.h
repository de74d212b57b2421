#pragma once

#include <QString>

namespace cq {

// Why a name typed for a saved copy cannot be used; empty when it can. The name becomes a file
// name in the chosen folder, so it may not be blank, a folder path or a special entry.
QString SaveNameProblem(const QString& name);

// The rendered file to save: the video when it exists, else the sound-only render; empty when
// there is neither.
QString RenderedFileToSave(const QString& finalMixVideo, const QString& gstrFinalMixMP3FileSpec);

// folder + "/" + trimmed name + the source's extension (".avi" or ".mp3"). A root folder ("/")
// gives "/name.avi".
QString SaveCopyTarget(const QString& folder, const QString& name, const QString& sourceFile);

// The folder the chooser returns: no trailing "/", except the root itself.
QString TrimChosenFolder(QString folder);

// Copies the file through a temporary file in the target's folder and renames it into place,
// so an existing target is replaced only by a complete copy and a failed copy leaves it as it
// was. Returns an error text, empty on success.
QString CopyFileReplacing(const QString& source, const QString& target);

// Copies the subtitle files beside the rendered source (X.srt, X.vtt) to beside the target, so
// that a player finds the captions with the saved copy as it did with the render. Returns an
// error text; empty when every one there was copied.
QString CopySubtitlesAlong(const QString& source, const QString& target);

} // namespace cq
