#pragma once

#include <array>
#include <memory>

#include "ADSRShaper.h"
#include "GrainSynthesiser.h"

inline constexpr unsigned kVoiceCount = 12;

/// The twelve voices: voice i is the pair synths[i], envelopes[i]. Triggering an envelope triggers
/// its synthesiser, so only envelopes are triggered and released.
struct Voices {
    std::array<std::unique_ptr<GrainSynthesiser>, kVoiceCount> synths;
    std::array<std::unique_ptr<ADSRShaper>, kVoiceCount> envelopes;
};
