#pragma once

#include <cstdint>

#include "ADSRCurve.h"

/// [render] Multiplies `samples` by the envelope of `state` from its time on. True when a release
/// came to its end, from where on the samples are 0.
bool applyEnvelope(const ADSRCurve& curve, const ADSRState& state, float* samples,
                   std::uint32_t frames) noexcept;
