#include "render/FrameRate.h"

namespace cq {

QString FrameRate::ffmpegText() const {
    return den == 1 ? QString::number(num) : QStringLiteral("%1/%2").arg(num).arg(den);
}

qint64 FrameRate::frameAt(qint64 ms) const {
    // Rounded half up in integers: the same frame for the same time on every machine.
    const qint64 scaled = ms * num;
    const qint64 per = 1000 * den;
    return (2 * scaled + per) / (2 * per);
}

} // namespace cq
