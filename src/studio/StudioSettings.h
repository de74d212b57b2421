#pragma once

#include <QString>

namespace cq {

// The container Render writes a video in: AVI plays in desktop players, MP4 (H.264 and AAC)
// also in browsers, phones and mail previews.
enum class RenderFormat { Avi, Mp4 };

// Session-wide values of the studio that are not paths or folders.
struct StudioSettings {
    QString gstrVideoRes = QStringLiteral("320X240"); // output frame size, "WIDTHXHEIGHT"
    QString gstrFrameRate = QStringLiteral("29.97");
    // The text being shown, spoken or edited; only the window's display place changes it.
    QString gstrCurrentText;
    // Videos keep their own sound in a render, mixed under the voice.
    bool keepVideoSound = false;
    RenderFormat renderFormat = RenderFormat::Avi;
    // The voice is brought to an even loudness in a render; background noise taken out first.
    bool evenVoice = true;
    bool reduceNoise = false;
    // A render writes the captions beside its result ("Captions", --captions).
    bool captions = false;
    // A render draws the captions into the picture ("Burn in captions", --burn-captions).
    bool burnCaptions = false;
};

} // namespace cq
