#pragma once

namespace cq {

// What a render does to the recorded voice before it is mixed.
struct VoiceOptions {
    bool even = true;         // brought to one loudness, its peaks held under a ceiling
    bool reduceNoise = false; // steady background noise taken out first
};

} // namespace cq
