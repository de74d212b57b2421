#include "RenderTestMedia.h"

#include "platform/ToolRunner.h"

#include <QRegularExpression>

#include <limits>

namespace cq::test {

namespace {

// The colour of the first frame's one pixel that ffmpeg leaves after these input and filter
// options.
QColor firstPixel(const QString& ffmpeg, const QStringList& args) {
    ToolRunner runner;
    const RunResult r = runner.runProgram(
        ffmpeg, QStringList{"-nostdin", "-v", "error"} + args +
                    QStringList{"-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"});
    const QByteArray px = runner.standardOutput();
    if (!r.ok() || px.size() < 3)
        return {};
    return QColor(quint8(px[0]), quint8(px[1]), quint8(px[2]));
}

} // namespace

RenderTestMedia::RenderTestMedia(QString ffmpeg, QString ffprobe)
    : m_ffmpeg(std::move(ffmpeg)), m_ffprobe(std::move(ffprobe)) {}

bool RenderTestMedia::run(const QStringList& args, QString* stderrText) const {
    ToolRunner runner;
    const RunResult r = runner.runProgram(m_ffmpeg, QStringList{"-nostdin", "-v", "error"} + args);
    if (stderrText)
        *stderrText = r.errorText;
    return r.ok();
}

bool RenderTestMedia::solidPicture(const QString& file, const QString& colour, int w, int h) const {
    return run({"-f", "lavfi", "-i", QStringLiteral("color=%1:s=%2x%3").arg(colour).arg(w).arg(h),
                "-frames:v", "1", "-update", "1", "-y", file});
}

bool RenderTestMedia::bitmapUnderName(const QString& file, const QString& colour) const {
    return run({"-f", "lavfi", "-i", QStringLiteral("color=%1:s=400x300").arg(colour), "-frames:v",
                "1", "-c:v", "bmp", "-f", "image2", "-update", "1", "-y", file});
}

bool RenderTestMedia::toneVideo(const QString& file, const QString& colour, double seconds,
                                int toneHz) const {
    const QString d = QString::number(seconds);
    return run({"-f", "lavfi", "-i", QStringLiteral("color=%1:s=320x180:r=25:d=%2").arg(colour, d),
                "-f", "lavfi", "-i", QStringLiteral("sine=f=%1:d=%2").arg(toneHz).arg(d), "-ac",
                "2", "-c:v", "mpeg4", "-c:a", "pcm_s16le", "-shortest", "-y", file});
}

bool RenderTestMedia::voice(const QString& file, double seconds, int toneHz) const {
    return run({"-f", "lavfi", "-i",
                QStringLiteral("sine=f=%1:d=%2").arg(toneHz).arg(QString::number(seconds)), "-ac",
                "1", "-ar", "44100", "-c:a", "pcm_s16le", "-y", file});
}

QColor RenderTestMedia::colourAt(const QString& file, double seconds) const {
    return colourAtPoint(file, seconds, -1, -1);
}

QColor RenderTestMedia::colourShownAt(const QString& file, double seconds) const {
    return firstPixel(m_ffmpeg, {"-i", file, "-vf",
                                 QStringLiteral("fps=30000/1001,trim=start=%1,crop=8:8,scale=1:1")
                                     .arg(QString::number(seconds, 'f', 3))});
}

QColor RenderTestMedia::colourAtPoint(const QString& file, double seconds, int x, int y) const {
    const QString crop = x < 0 ? QStringLiteral("crop=8:8,scale=1:1")
                               : QStringLiteral("crop=2:2:%1:%2,scale=1:1").arg(x).arg(y);
    return firstPixel(m_ffmpeg, {"-ss", QString::number(seconds, 'f', 3), "-i", file, "-vf", crop});
}

double RenderTestMedia::bandLevel(const QString& file, double from, double length, int hz) const {
    QString err;
    ToolRunner runner;
    const RunResult r = runner.runProgram(
        m_ffmpeg,
        {"-nostdin", "-ss", QString::number(from), "-t", QString::number(length), "-i", file, "-vn",
         "-af", QStringLiteral("bandpass=f=%1:width_type=h:w=60,volumedetect").arg(hz), "-f",
         "null", "-"});
    static const QRegularExpression re(QStringLiteral("mean_volume: (-?[0-9.]+|-inf) dB"));
    const QRegularExpressionMatch m = re.match(r.errorText);
    if (!m.hasMatch() || m.captured(1) == u"-inf")
        return -100;
    return m.captured(1).toDouble();
}

double RenderTestMedia::duration(const QString& file, const QString& kind) const {
    ToolRunner runner;
    const QStringList args =
        kind == u"format"
            ? QStringList{"-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", file}
            : QStringList{"-v",         "error",         "-select_streams",
                          kind.left(1), "-show_entries", "stream=duration",
                          "-of",        "csv=p=0",       file};
    runner.runProgram(m_ffprobe, args);
    bool ok = false;
    const double d = QString::fromUtf8(runner.standardOutput()).trimmed().toDouble(&ok);
    return ok ? d : -1;
}

QList<double> RenderTestMedia::frameTimes(const QString& file) const {
    ToolRunner runner;
    runner.runProgram(m_ffprobe, {"-v", "error", "-select_streams", "v", "-show_entries",
                                  "frame=pts_time", "-of", "csv=p=0", file});
    QList<double> times;
    for (const QString& l : QString::fromUtf8(runner.standardOutput()).split(u'\n'))
        if (!l.trimmed().isEmpty())
            times << l.trimmed().remove(u',').toDouble();
    return times;
}

QString ColourName(const QColor& c) {
    if (!c.isValid())
        return QStringLiteral("none");
    const std::pair<const char*, QColor> palette[] = {
        {"black", QColor(0, 0, 0)},      {"red", QColor(255, 0, 0)},
        {"green", QColor(0, 128, 0)},    {"blue", QColor(0, 0, 255)},
        {"yellow", QColor(255, 255, 0)}, {"white", QColor(255, 255, 255)}};
    QString best;
    int bestDistance = std::numeric_limits<int>::max();
    for (const auto& [name, colour] : palette) {
        const int d = (c.red() - colour.red()) * (c.red() - colour.red()) +
                      (c.green() - colour.green()) * (c.green() - colour.green()) +
                      (c.blue() - colour.blue()) * (c.blue() - colour.blue());
        if (d < bestDistance) {
            bestDistance = d;
            best = QString::fromLatin1(name);
        }
    }
    return best;
}

} // namespace cq::test
