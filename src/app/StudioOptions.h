#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// What the command line asks for. A new option is a field here and one line in the option
// table of StudioOptions.cpp.
struct StudioOptions {
    QString appDir; // --app-dir DIR
    bool check = false;
    QString render;            // --render TIMELINE
    QString voice;             // --voice WAV
    QString size;              // --size WxH
    QString output;            // --output FILE
    bool videoSound = false;   // --video-sound
    bool rawVoice = false;     // --raw-voice
    bool reduceNoise = false;  // --reduce-noise
    bool captions = false;     // --captions
    bool burnCaptions = false; // --burn-captions
    bool help = false;
    bool version = false;
    QString error; // a usage error, for the user
};

// Reads the whole command line, the program's name first.
StudioOptions ParseStudioOptions(const QStringList& arguments);
QString StudioUsage();
// The name and version as the window title shows them: "Clipquill v.2.1.007".
QString StudioVersionText();

} // namespace cq
