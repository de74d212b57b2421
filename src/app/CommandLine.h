#pragma once

#include <QString>
#include <QStringList>

namespace cq {

struct StudioOptions {
    QString appDir; // --app-dir DIR
    bool check = false;
    QString render;          // --render TIMELINE
    QString voice;           // --voice WAV
    QString size;            // --size WxH
    QString output;          // --output FILE
    bool videoSound = false; // --video-sound
    bool help = false;
    QString error; // a usage error, for the user
};

StudioOptions ParseStudioOptions(const QStringList& arguments);
QString StudioUsage();

// The whole program: chooses the application folder, then runs the check, a command-line
// render or the window.
int RunStudio(int argc, char** argv);

} // namespace cq
