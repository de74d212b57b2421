#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// The external tools: System/ffmpeg, System/ffprobe and System/convert of the application
// folder are links to the system's programs; when one is missing there, the program on PATH
// serves. The render, the thumbnails and the installation check all find them here, so the
// check can never pass a tool the render would miss.
struct ToolLocation {
    QString path;    // the program to run; empty when it is nowhere
    QString name;    // "ffmpeg", "convert"
    QString package; // the Debian package that provides it

    bool found() const { return !path.isEmpty(); }
    // "ffmpeg is not installed. Install the Debian package "ffmpeg"." for the user.
    QString missingMessage() const;
};

ToolLocation LocateTool(const QString& applicationFileSpec, const QString& name,
                        const QString& package);
ToolLocation LocateFfmpeg(const QString& gstrFFMPEGFileSpec);
// ffprobe stands in the same folder as ffmpeg.
ToolLocation LocateFfprobeBesideFfmpeg(const QString& gstrFFMPEGFileSpec);
ToolLocation LocateConvert(const QString& gstrImageMagickFileSpec);

} // namespace cq
