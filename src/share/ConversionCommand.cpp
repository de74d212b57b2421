#include "share/ConversionCommand.h"

#include "share/ConversionPresets.h"

#include <QFileInfo>

namespace cq {

namespace {

// Rates are given in kbit/s; ffmpeg reads a bare number as bit/s.
QString KiloBits(const QString& value) {
    const QString v = value.trimmed();
    return v.endsWith(u'k', Qt::CaseInsensitive) ? v : v + u'k';
}

QString Or(const QString& value, const char* fallback) {
    const QString v = value.trimmed();
    return v.isEmpty() ? QString::fromLatin1(fallback) : v;
}

QString FileArgument(const QString& path) {
    return QStringLiteral("file:") + QFileInfo(path).absoluteFilePath();
}

// H.263 knows only the five picture sizes of its standard; any other size goes to MPEG-4
// part 2, which the 3GP container carries as well.
QString ThreeGpVideoCodec(const QString& size) {
    static const QStringList h263Sizes{QStringLiteral("128x96"), QStringLiteral("176x144"),
                                       QStringLiteral("352x288"), QStringLiteral("704x576"),
                                       QStringLiteral("1408x1152")};
    return h263Sizes.contains(size) ? QStringLiteral("h263") : QStringLiteral("mpeg4");
}

void AddIfSet(QStringList& args, const char* option, const QString& value) {
    if (!value.trimmed().isEmpty())
        args << QString::fromLatin1(option) << value.trimmed();
}

bool IsWindowsMediaFormat(const QString& format) {
    return format == u"WMV" || format == u"WMA";
}

// What a phone's 3GP player takes: AAC, mono unless asked otherwise.
void AddThreeGpAudio(QStringList& a, const ConversionSettings& s) {
    a << QStringLiteral("-b:a") << KiloBits(Or(s.audioBitRate, "64"));
    a << QStringLiteral("-c:a") << QStringLiteral("aac");
    a << QStringLiteral("-ac") << Or(s.audioChannels, "1");
    AddIfSet(a, "-ar", s.audioSampleRate);
}

void AddRingtoneArguments(QStringList& a, const QString& format, const ConversionSettings& s) {
    a << QStringLiteral("-vn");
    if (format == u"3GP")
        AddThreeGpAudio(a, s);
    else if (IsWindowsMediaFormat(format))
        a << QStringLiteral("-c:a") << QStringLiteral("wmav2");
}

void AddThreeGpArguments(QStringList& a, const QString& size, const ConversionSettings& s) {
    const QString frameSize = size.isEmpty() ? QStringLiteral("176x144") : size;
    a << QStringLiteral("-s") << frameSize;
    a << QStringLiteral("-c:v") << ThreeGpVideoCodec(frameSize);
    a << QStringLiteral("-r") << Or(s.frameRate, "25");
    a << QStringLiteral("-b:v") << KiloBits(Or(s.videoBitRate, "200"));
    AddThreeGpAudio(a, s);
}

void AddVideoArguments(QStringList& a, const QString& format, const QString& size,
                       const ConversionSettings& s) {
    if (!size.isEmpty())
        a << QStringLiteral("-s") << size;
    if (!s.frameRate.trimmed().isEmpty())
        a << QStringLiteral("-r") << s.frameRate.trimmed();
    else if (format == u"MPG") // MPEG-1 accepts only the broadcast frame rates
        a << QStringLiteral("-r") << QStringLiteral("30000/1001");
    if (format == u"MP4" || format == u"MOV") // what phones and players decode
        a << QStringLiteral("-c:v") << QStringLiteral("libx264") << QStringLiteral("-pix_fmt")
          << QStringLiteral("yuv420p");
    if (!s.videoBitRate.trimmed().isEmpty())
        a << QStringLiteral("-b:v") << KiloBits(s.videoBitRate);
}

void AddOtherFormatArguments(QStringList& a, const QString& format, const QString& size,
                             const ConversionSettings& s) {
    if (IsSoundOnlyFormat(format))
        a << QStringLiteral("-vn");
    else
        AddVideoArguments(a, format, size, s);
    if (IsWindowsMediaFormat(format))
        a << QStringLiteral("-c:v") << QStringLiteral("wmv2") << QStringLiteral("-c:a")
          << QStringLiteral("wmav2");
    if (!s.audioBitRate.trimmed().isEmpty())
        a << QStringLiteral("-b:a") << KiloBits(s.audioBitRate);
    AddIfSet(a, "-ac", s.audioChannels);
    if (!s.audioSampleRate.trimmed().isEmpty())
        AddIfSet(a, "-ar", s.audioSampleRate);
    else if (format == u"FLV") // FLV carries MP3 at 44.1, 22.05 or 11.025 kHz only
        a << QStringLiteral("-ar") << QStringLiteral("44100");
}

} // namespace

ToolCommand ConvertFileForCellPhones(const QString& ffmpegFileSpec, const QString& inputFile,
                                     const QString& outputFile, const QString& presetText,
                                     const ConversionSettings& s) {
    ToolCommand command;
    command.program = ffmpegFileSpec;
    command.inputFiles = {inputFile};
    QStringList& a = command.arguments;
    a << QStringLiteral("-nostdin") << QStringLiteral("-hide_banner") << QStringLiteral("-i")
      << FileArgument(inputFile);
    const QString format = s.outputFormat.trimmed().toUpper();
    const QString size = NormalizeFrameSize(s.frameSize);
    if (IsRingtonePreset(presetText))
        AddRingtoneArguments(a, format, s);
    else if (format == u"3GP")
        AddThreeGpArguments(a, size, s);
    else
        AddOtherFormatArguments(a, format, size, s);
    a << QStringLiteral("-y") << FileArgument(outputFile);
    return command;
}

QString ConvertedFileSpec(const QString& inputFile, const QString& format) {
    // Only the file's own extension goes: a dot in a folder name stays.
    const QFileInfo info(inputFile);
    const QString folder = info.path();
    return (folder == u"." && !inputFile.startsWith(u'.') ? QString() : folder + u'/') +
           info.completeBaseName() + u'.' + format;
}

} // namespace cq
