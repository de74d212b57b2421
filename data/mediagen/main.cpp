// Draws the program's own media into SystemMedia: the black picture, the splash picture and a
// few sound effects. Run at build time; nothing is copied from anywhere.
#include "platform/WavFormat.h"

#include <QDir>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <functional>

namespace {

bool writeWav(const QString& path, double seconds, const std::function<double(double)>& wave) {
    constexpr int rate = 44100;
    const int samples = static_cast<int>(seconds * rate);
    QByteArray data;
    data.reserve(samples * 2);
    for (int i = 0; i < samples; ++i) {
        const double v = std::clamp(wave(static_cast<double>(i) / rate), -1.0, 1.0);
        const qint16 s = static_cast<qint16>(std::lround(v * 30000));
        data.append(static_cast<char>(s & 0xff));
        data.append(static_cast<char>((s >> 8) & 0xff));
    }
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(cq::WavHeader(rate, 1, 16, static_cast<quint32>(data.size())));
    f.write(data);
    return true;
}

QImage splash() {
    QImage img(640, 480, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient g(0, 0, 0, 480);
    g.setColorAt(0, QColor(0x1d, 0x2b, 0x4f));
    g.setColorAt(1, QColor(0x05, 0x08, 0x12));
    p.fillRect(img.rect(), g);
    p.setRenderHint(QPainter::Antialiasing);
    // A quill over a film strip.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xf2, 0xb1, 0x34));
    for (int i = 0; i < 8; ++i)
        p.drawRoundedRect(QRectF(120 + i * 52, 150, 34, 24), 4, 4);
    QPainterPath quill;
    quill.moveTo(230, 300);
    quill.cubicTo(300, 180, 420, 110, 470, 90);
    quill.cubicTo(440, 170, 360, 250, 250, 305);
    quill.closeSubpath();
    p.setBrush(QColor(0xf4, 0xf1, 0xe8));
    p.drawPath(quill);
    p.setPen(QPen(QColor(0xf4, 0xf1, 0xe8), 3));
    p.drawLine(QPointF(230, 300), QPointF(212, 330));
    p.setPen(QColor(0xf4, 0xf1, 0xe8));
    QFont font(QStringLiteral("Liberation Sans"), 44, QFont::Bold);
    p.setFont(font);
    p.drawText(QRect(0, 330, 640, 70), Qt::AlignCenter, QStringLiteral("Clipquill"));
    font.setPointSize(16);
    font.setBold(false);
    p.setFont(font);
    p.drawText(QRect(0, 395, 640, 40), Qt::AlignCenter,
               QStringLiteral("Speak. Click. Send a video."));
    return img;
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc < 2)
        return 2;
    const QDir media(QString::fromLocal8Bit(argv[1]));
    QDir().mkpath(media.filePath(QStringLiteral("Sound Effects")));
    bool ok = true;
    QImage black(640, 480, QImage::Format_RGB32);
    black.fill(Qt::black);
    ok = black.save(media.filePath(QStringLiteral("Black.jpg")), "JPG", 95) && ok;
    ok =
        splash().save(media.filePath(QStringLiteral("HarrowfinSplashScreen.JPG")), "JPG", 90) && ok;
    const QString fx = media.filePath(QStringLiteral("Sound Effects/"));
    constexpr double pi = 3.14159265358979;
    ok = writeWav(fx + QStringLiteral("Chime.wav"), 1.2,
                  [](double t) {
                      return 0.6 * std::exp(-3 * t) *
                             (std::sin(2 * pi * 880 * t) + 0.5 * std::sin(2 * pi * 1320 * t));
                  }) &&
         ok;
    ok = writeWav(fx + QStringLiteral("Pop.wav"), 0.15,
                  [](double t) {
                      return std::exp(-40 * t) * std::sin(2 * pi * (600 - 2000 * t) * t);
                  }) &&
         ok;
    ok = writeWav(fx + QStringLiteral("Rising Tone.wav"), 0.8,
                  [](double t) {
                      return 0.5 * std::sin(2 * pi * (300 + 500 * t) * t) * (1 - t / 0.8);
                  }) &&
         ok;
    return ok ? 0 : 1;
}
