#include "library/playback/VolumeSliderMath.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace cq {

int SliderTravel(int trackWidth, int knobWidth) {
    return std::max(0, trackWidth - knobWidth - kKnobEndGap);
}

int MoveKnob(int knobLeft, int movement, int travel) {
    const int step = std::clamp(movement, -kMaxKnobStep, kMaxKnobStep);
    return std::clamp(knobLeft + step, 0, std::max(0, travel));
}

int SliderLevel(int knobLeft, int travel) {
    if (travel <= 0)
        return 0;
    return static_cast<int>(static_cast<qint64>(kLevelScale) * std::clamp(knobLeft, 0, travel) /
                            travel);
}

int KnobLeftForLevel(int level, int travel) {
    const int clamped = std::clamp(level, 0, kLevelScale);
    // Round up so that SliderLevel gives the level back.
    return static_cast<int>((static_cast<qint64>(clamped) * travel + kLevelScale - 1) /
                            kLevelScale);
}

int MasterVolumeValue(int knobLeft, int travel) {
    if (travel <= 0)
        return 0;
    return static_cast<int>(static_cast<qint64>(kMasterVolumeMax) *
                            std::clamp(knobLeft, 0, travel) / travel);
}

int MasterVolumePercent(int masterValue) {
    const int clamped = std::clamp(masterValue, 0, kMasterVolumeMax);
    return static_cast<int>(std::lround(clamped * 100.0 / kMasterVolumeMax));
}

int MasterValueFromPercent(int percent) {
    return static_cast<int>(std::lround(std::clamp(percent, 0, 100) * kMasterVolumeMax / 100.0));
}

QStringList MasterVolumeArguments(int masterValue) {
    return {QStringLiteral("set-sink-volume"), QStringLiteral("@DEFAULT_SINK@"),
            QStringLiteral("%1%").arg(MasterVolumePercent(masterValue))};
}

int ParseSinkVolumePercent(const QString& pactlOutput) {
    static const QRegularExpression percent(QStringLiteral("(\\d+)%"));
    const QRegularExpressionMatch match = percent.match(pactlOutput);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

int KnobDrag::move(int mouseX, int knobLeft, int travel) {
    if (!m_dragging)
        return knobLeft;
    if (!m_lastX) {
        m_lastX = mouseX;
        return knobLeft;
    }
    const int movement = mouseX - *m_lastX;
    m_lastX = mouseX;
    return MoveKnob(knobLeft, movement, travel);
}

} // namespace cq
