#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace cq::test {

// Little-endian 16-bit mono samples at 44,100 a second, as the microphone delivers them.
inline QByteArray Tone(double dbfs, qint64 ms, double hz = 440.0) {
    const double amplitude = 32768.0 * std::pow(10.0, dbfs / 20.0);
    const qint64 n = ms * 44100 / 1000;
    QByteArray bytes(n * 2, Qt::Uninitialized);
    for (qint64 i = 0; i < n; ++i) {
        const double v = amplitude * std::sin(2.0 * std::numbers::pi * hz * double(i) / 44100.0);
        const auto s = static_cast<qint16>(std::clamp(std::lround(v), -32768L, 32767L));
        bytes[2 * i] = char(s & 0xff);
        bytes[2 * i + 1] = char((s >> 8) & 0xff);
    }
    return bytes;
}

inline QByteArray Silence(qint64 ms) {
    return QByteArray(ms * 44100 / 1000 * 2, '\0');
}

} // namespace cq::test
