#pragma once

namespace cq {

// What the one display place of the window shows, in the order of its switch buttons.
enum class DisplaySurface { Video, Picture, Text };
inline constexpr int kDisplaySurfaceCount = 3;

// The surface's place in the display place's stack and among its switch buttons.
constexpr int SurfaceIndex(DisplaySurface surface) {
    return static_cast<int>(surface);
}

} // namespace cq
