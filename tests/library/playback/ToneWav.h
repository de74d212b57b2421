#pragma once

#include "platform/WavFormat.h"

#include <QFile>
#include <QString>

#include <cmath>

namespace cq::test {

// A 440 Hz tone, 16-bit mono, at a path whose name needs quoting in any shell.
inline QString WriteToneWav(const QString& folder, double seconds) {
    const int rate = 44100;
    const int samples = static_cast<int>(rate * seconds);
    QByteArray data(samples * 2, Qt::Uninitialized);
    for (int i = 0; i < samples; ++i) {
        const auto v = static_cast<qint16>(8000 * std::sin(2 * M_PI * 440 * i / rate));
        data[2 * i] = static_cast<char>(v & 0xFF);
        data[2 * i + 1] = static_cast<char>((v >> 8) & 0xFF);
    }
    const QString path = folder + QStringLiteral("/tone 'a' $x.wav");
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(WavHeader(rate, 1, 16, static_cast<quint32>(data.size())) + data);
    return path;
}

} // namespace cq::test
