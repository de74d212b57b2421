#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

// The output formats of the conversion window, in list order; index 0 ("AVI") is the rendered
// video itself.
const QStringList& ConvertFormats();
// The captions of the resolution options; option 5 ("Other") takes the size from a text box.
const QStringList& ScreenResolutionCaptions();

struct ConvertPreset {
    QString name;
    int resolutionOption; // index into ScreenResolutionCaptions(), or -1: sound only, no size
    int formatIndex;      // index into ConvertFormats()
};
const QList<ConvertPreset>& ConvertPresets();

// Formats whose result holds sound only, whatever the input.
bool IsSoundOnlyFormat(const QString& format);
// A sound-only preset: the rendered video's picture is dropped.
bool IsRingtonePreset(const QString& presetText);

// "320x240", "320X240" or "160x120 " (a caption's trailing blank) as ffmpeg's "320x240";
// empty when the text is not two even whole numbers from 16 to 4096 joined by x.
QString NormalizeFrameSize(const QString& text);

} // namespace cq
