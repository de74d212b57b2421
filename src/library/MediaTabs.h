#pragma once

namespace cq {

// The media browser's eight tabs, in their order on screen. A tab's number indexes every
// per-tab list of the window: its folder, its player, its volume slider.
enum class MediaTabId {
    Video,
    Audio,
    Pictures,
    SoundEffects,
    TextAndSpeech, // "Text and/or Synthesized Speech": the text list instead of files
    StandardEffects,
    Other1,
    Other2,
};
inline constexpr int kMediaTabCount = 8;

constexpr int TabIndex(MediaTabId tab) {
    return static_cast<int>(tab);
}
constexpr MediaTabId TabAt(int index) {
    return static_cast<MediaTabId>(index);
}

} // namespace cq
