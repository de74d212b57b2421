#pragma once

#include "platform/ToolCommand.h"

#include <QString>
#include <QStringList>

namespace cq {

// The seven values a conversion reads. The conversion window leaves the five rates and counts
// empty, so the defaults of each format apply.
struct ConversionSettings {
    QString outputFormat;    // "MP4", "3GP", ...
    QString frameSize;       // "176x144"; empty keeps the input's size
    QString videoBitRate;    // kbit/s
    QString frameRate;       // frames per second
    QString audioBitRate;    // kbit/s
    QString audioSampleRate; // Hz
    QString audioChannels;
};

// The ffmpeg command that converts the rendered clip for a phone or player. A ring-tone preset
// keeps the sound only; so do the formats MP3, WAV and M4A. File names are passed with ffmpeg's
// "file:" prefix so that no name is taken for an option or another protocol.
ToolCommand ConvertFileForCellPhones(const QString& ffmpegFileSpec, const QString& inputFile,
                                     const QString& outputFile, const QString& presetText,
                                     const ConversionSettings& settings);

// The input without its extension, ".", and the format text: FinalMix.avi -> FinalMix.MP4.
QString ConvertedFileSpec(const QString& inputFile, const QString& format);

} // namespace cq
