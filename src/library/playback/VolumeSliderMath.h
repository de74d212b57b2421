#pragma once

#include <QStringList>
#include <QtGlobal>

#include <optional>

namespace cq {

inline constexpr int kPlayerVolumeMax = 100;
inline constexpr int kLevelScale = 100;
inline constexpr int kMasterVolumeMax = 65336; // 0xFF38: the top of the master scale
inline constexpr int kMaxKnobStep = 20;        // the most a knob moves per mouse event
inline constexpr int kKnobEndGap = 5;

// How far the knob can move: track width minus knob width minus the end gap, never negative.
int SliderTravel(int trackWidth, int knobWidth);
// The knob's new left after a mouse movement: at most 20 units a step, held within the travel.
int MoveKnob(int knobLeft, int movement, int travel);
// 0 to 100 from the knob's position.
int SliderLevel(int knobLeft, int travel);
// The knob's left for a level, the inverse of SliderLevel as far as whole units allow.
int KnobLeftForLevel(int level, int travel);
// 0 to 65336 from the knob's position.
int MasterVolumeValue(int knobLeft, int travel);
// The master scale mapped linearly onto the sound server's percent, rounded.
int MasterVolumePercent(int masterValue);
int MasterValueFromPercent(int percent);
// pactl's arguments that set the default sink to the master value.
QStringList MasterVolumeArguments(int masterValue);
// The first "NN%" of `pactl get-sink-volume` output, or -1.
int ParseSinkVolumePercent(const QString& pactlOutput);

// A knob drag: the press starts it, each move yields the knob's new left, the release ends it.
class KnobDrag {
public:
    void press() {
        m_dragging = true;
        m_lastX.reset();
    }
    // mouseX in any fixed frame (the track's or the screen's); the first move only records it.
    int move(int mouseX, int knobLeft, int travel);
    void release() {
        m_dragging = false;
        m_lastX.reset();
    }
    bool dragging() const { return m_dragging; }

private:
    bool m_dragging = false;
    std::optional<int> m_lastX;
};

} // namespace cq
