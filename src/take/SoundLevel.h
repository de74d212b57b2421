#pragma once

namespace cq {

// Levels in dBFS: 0 is full scale, the meter's floor stands for anything quieter.
inline constexpr double kLevelFloorDb = -60.0;

// The microphone's level over the last twentieth of a second, with the highest peak of about the
// last second held.
struct SoundLevel {
    double rmsDb = kLevelFloorDb;
    double peakDb = kLevelFloorDb;
    double heldPeakDb = kLevelFloorDb;
};

enum class LevelWarning { None, NoSound, TooLoud };

} // namespace cq
