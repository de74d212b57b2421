#pragma once

#include "app/Startup.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

// "What is wrong with my installation": every finding is really tried (the tools are run,
// Qt is asked for the audio input and the speech engine), never guessed from file names.
struct CheckFinding {
    QString what; // "ffmpeg", "ffprobe", "convert", "audio input", ...
    bool usable = false;
    QString detail; // the version, the device, or what to do about it
};

struct InstallationCheck {
    QList<CheckFinding> findings;

    static InstallationCheck run(const AppPaths& paths);
    // The tools the render cannot work without, found exactly as the render finds them.
    bool essentialsUsable() const;
    QStringList missingEssentials() const;
    // The path globals, the directory settings, then one line per finding.
    static QString report(const WindowlessStartup& startup, const InstallationCheck& check);
};

} // namespace cq
