#include "share/ConversionPresets.h"

#include <QRegularExpression>

namespace cq {

const QStringList& ConvertFormats() {
    static const QStringList formats{
        QStringLiteral("AVI"), QStringLiteral("FLV"), QStringLiteral("MP4"), QStringLiteral("MPG"),
        QStringLiteral("3GP"), QStringLiteral("MOV"), QStringLiteral("WMV"), QStringLiteral("MP3"),
        QStringLiteral("WAV"), QStringLiteral("M4A")};
    return formats;
}

const QStringList& ScreenResolutionCaptions() {
    static const QStringList captions{QStringLiteral("160x120 "), QStringLiteral("176x144"),
                                      QStringLiteral("320x240"),  QStringLiteral("352x288"),
                                      QStringLiteral("480x320"),  QStringLiteral("Other")};
    return captions;
}

const QList<ConvertPreset>& ConvertPresets() {
    static const QList<ConvertPreset> presets{
        {QStringLiteral("Apple Iphone 3G"), 4, 2},
        {QStringLiteral("Apple IPod Touch"), 4, 2},
        {QStringLiteral("Apple Iphone (original)"), 2, 2},
        {QStringLiteral("Apple Video Ipod Classic"), 2, 2},
        {QStringLiteral("Regular Cellphone (3GP format)"), 1, 4},
        {QStringLiteral("Regular Cellphone (WMV format)"), 1, 6},
        {QStringLiteral("Regular Cellphone (MP4 format)"), 1, 2},
        {QStringLiteral("Ringtones (3GP)"), -1, 4},
        {QStringLiteral("Ringtones (WMV)"), -1, 6},
        {QStringLiteral("Ringtones (MP4)"), -1, 2},
        {QStringLiteral("Ringtones (MP3)"), -1, 7},
    };
    return presets;
}

bool IsSoundOnlyFormat(const QString& format) {
    const QString upper = format.toUpper();
    return upper == u"MP3" || upper == u"WAV" || upper == u"M4A";
}

bool IsRingtonePreset(const QString& presetText) {
    return presetText.contains(QStringLiteral("Ringtones"));
}

QString NormalizeFrameSize(const QString& text) {
    static const QRegularExpression size(QStringLiteral("^(\\d{1,4})[xX](\\d{1,4})$"));
    const QRegularExpressionMatch match = size.match(text.trimmed());
    if (!match.hasMatch())
        return {};
    const int width = match.captured(1).toInt();
    const int height = match.captured(2).toInt();
    // The encoders of the phone formats work on whole 2x2 blocks of chroma.
    if (width < 16 || height < 16 || width > 4096 || height > 4096 || width % 2 || height % 2)
        return {};
    return QStringLiteral("%1x%2").arg(width).arg(height);
}

} // namespace cq
