#include "take/widgets/LevelBar.h"

#include <QPainter>

#include <cmath>

namespace cq {

namespace {
// Above these the voice is getting loud, then close to clipping.
constexpr double kLoudDb = -12.0;
constexpr double kHotDb = -3.0;
} // namespace

LevelBar::LevelBar(QWidget* parent) : QProgressBar(parent) {
    setRange(int(kLevelFloorDb), 0);
    setValue(int(kLevelFloorDb));
    setFormat(QStringLiteral("%v dBFS"));
    setTextVisible(false);
}

void LevelBar::setLevel(const SoundLevel& level) {
    m_level = level;
    setValue(int(std::lround(level.rmsDb)));
    update();
}

QSize LevelBar::sizeHint() const {
    return {160, 14};
}

int LevelBar::xOf(double db) const {
    const double share = (db - kLevelFloorDb) / -kLevelFloorDb;
    return int(std::lround(share * (width() - 2))) + 1;
}

void LevelBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRect inner = rect().adjusted(1, 1, -1, -1);
    p.fillRect(rect(), QColor(90, 90, 90));
    p.fillRect(inner, QColor(30, 30, 30));
    // The fill changes colour where the voice gets loud, so the eye sees the zone it reached.
    const struct {
        double from, to;
        QColor colour;
    } zones[] = {{kLevelFloorDb, kLoudDb, QColor(40, 170, 60)},
                 {kLoudDb, kHotDb, QColor(220, 180, 30)},
                 {kHotDb, 0.0, QColor(210, 40, 40)}};
    for (const auto& zone : zones) {
        const double to = std::min(zone.to, m_level.rmsDb);
        if (to > zone.from)
            p.fillRect(
                QRect(QPoint(xOf(zone.from), inner.top()), QPoint(xOf(to) - 1, inner.bottom())),
                zone.colour);
    }
    if (m_level.heldPeakDb > kLevelFloorDb) {
        const int x = std::min(xOf(m_level.heldPeakDb), inner.right() - 1);
        p.fillRect(QRect(x, inner.top(), 2, inner.height()), QColor(240, 240, 240));
    }
}

} // namespace cq
