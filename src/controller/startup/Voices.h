#pragma once

#include <array>
#include <memory>

#include "ADSRShaper.h"
#include "GrainSynthesiser.h"

inline constexpr unsigned kVoiceCount = 12;

/// The twelve voices: voice i is the pair voiceSynths[i], voiceEnvelopes[i]. Triggering an envelope
/// triggers its synthesiser, so only envelopes are triggered and released.
struct Voices {
    std::array<std::unique_ptr<GrainSynthesiser>, kVoiceCount> voiceSynths;
    std::array<std::unique_ptr<ADSRShaper>, kVoiceCount> voiceEnvelopes;
};
