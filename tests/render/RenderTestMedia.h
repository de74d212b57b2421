#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

namespace cq::test {

// Test media made by the installed ffmpeg, and measurements of a rendered result.
class RenderTestMedia {
public:
    explicit RenderTestMedia(QString ffmpeg, QString ffprobe);

    bool run(const QStringList& ffmpegArguments, QString* stderrText = nullptr) const;
    bool solidPicture(const QString& file, const QString& colour, int w, int h) const;
    // A BMP stored under any name, as the studio saves its text slides.
    bool bitmapUnderName(const QString& file, const QString& colour) const;
    bool toneVideo(const QString& file, const QString& colour, double seconds, int toneHz) const;
    bool voice(const QString& file, double seconds, int toneHz = 440) const;

    // The colour of the middle of the first frame shown at or after the time.
    QColor colourAt(const QString& file, double seconds) const;
    // The colour of the middle of the frame on screen at the time, decoded from the start at
    // NTSC's rate: in a file whose frames last as long as they are shown (MP4), the first frame
    // at or after a time may be the next item.
    QColor colourShownAt(const QString& file, double seconds) const;
    // The colour of one pixel of that frame.
    QColor colourAtPoint(const QString& file, double seconds, int x, int y) const;
    // Mean level in dB of the sound near a frequency in a stretch; -100 when silent or unknown.
    double bandLevel(const QString& file, double from, double length, int hz) const;
    // Stream durations in seconds: "video", "audio" and "format".
    double duration(const QString& file, const QString& kind) const;
    // Presentation times of the video frames.
    QList<double> frameTimes(const QString& file) const;

private:
    QString m_ffmpeg;
    QString m_ffprobe;
};

// "red", "green"... for the nearest of the colours the tests use.
QString ColourName(const QColor& c);

} // namespace cq::test
