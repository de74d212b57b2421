#pragma once

#include <QString>

namespace cq {

// The external tools: System/ffmpeg and System/convert of the application folder are links
// to the system's programs; when one is missing there, the program on PATH serves.
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
ToolLocation LocateConvert(const QString& gstrImageMagickFileSpec);

} // namespace cq
