#pragma once

namespace cq {

// What a render does to the recorded voice before it is mixed.
struct VoiceOptions {
    bool even = true;         // brought to one loudness, its peaks held under a ceiling
    bool reduceNoise = false; // steady background noise taken out first
    // Set by the render for a voice of more than two channels (a 5.1 take): mixed down to stereo
    // before anything else, as the encoders would mix it after.
    bool mixDown = false;
};

} // namespace cq
