#include "render/MediaFileInfo.h"

#include "platform/FfmpegOutput.h"
#include "platform/TextHelpers.h"
#include "platform/TimeCode.h"

#include <QFile>

namespace cq {

namespace {

QString field(const QStringList& fields, int i) {
    return i < fields.size() ? fields[i] : QString();
}

// "mjpeg (Baseline)" and "h264 (High) (avc1 / 0x31637661)" name the codec by their first word.
QString codecName(const QString& f) {
    const qsizetype blank = f.indexOf(u' ');
    return blank < 0 ? f : f.left(blank);
}

QString frameRateDigits(const QString& f) {
    const QString digits = GetDigitsOnly(f).trimmed();
    return digits == u"2997" ? QStringLiteral("29.97") : digits;
}

} // namespace

qint64 MediaFileInfo::durationMs() const {
    return Duration.isEmpty() ? -1 : SecondsTextToMs(Duration);
}

MediaFileInfo GetFileInfoVars(const QString& probeText) {
    MediaFileInfo info;

    // "N/A" is ffmpeg's way of saying it does not know; that is no length.
    const QString code = FfmpegDurationCode(probeText);
    if (!code.isEmpty())
        info.Duration = HHMMSSMSToSecondsInSSMSFormat(code);

    const QString bitrate = FfmpegLabelLine(probeText, u"Bitrate: ");
    if (!bitrate.isNull())
        info.Bitrate = GetDigitsOnly(bitrate).trimmed();

    const QString video = FfmpegLabelLine(probeText, u"Video: ");
    if (!video.isNull()) {
        const QStringList f = FfmpegStreamFields(video);
        info.VideoCodec = codecName(field(f, 0));
        info.VideoPixelFormat = field(f, 1);
        info.FrameSize = field(f, 2);
        // Old builds put the rate fourth; 5.1 may put a bit rate there, then "25 fps", "25 tbr".
        QString rate = field(f, 3);
        for (qsizetype i = 3; i < f.size(); ++i) {
            if (f[i].endsWith(u" fps") || f[i].endsWith(u" tbr")) {
                rate = f[i];
                break;
            }
        }
        info.FrameRate = frameRateDigits(rate);
        const qsizetype x = info.FrameSize.indexOf(u'x', 0, Qt::CaseInsensitive);
        if (x >= 0) {
            info.Width = info.FrameSize.left(x).trimmed();
            info.Height = info.FrameSize.mid(x + 1).trimmed();
        }
    }

    const QString audio = FfmpegLabelLine(probeText, u"Audio: ");
    if (!audio.isNull()) {
        const QStringList f = FfmpegStreamFields(audio);
        info.AudioCodec = codecName(field(f, 0));
        info.AudioSampleRate = GetDigitsOnly(field(f, 1)).trimmed();
        info.AudioChannels = field(f, 2);
        info.AudioBits = GetDigitsOnly(field(f, 3)).trimmed();
    }
    return info;
}

} // namespace cq
