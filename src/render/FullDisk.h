#pragma once

#include <QString>

namespace cq {

// Why a tool's write into a folder failed, when it failed for lack of space: the disk is full,
// or the file grew past what the system lets it grow to. Empty when the tool's error text and
// the folder's free space show no such thing.
QString FullDiskProblem(const QString& toolErrorText, const QString& folder);

// The same from the tool's error text alone: for a tool that ended well, though it could not
// finish its file (ffmpeg: "Error writing trailer of ...: File too large" and exit code 0).
QString FullDiskErrorIn(const QString& toolErrorText, const QString& folder);

} // namespace cq
