#include "ADSRLoop.h"

#include <algorithm>

namespace {

// Frames are counted in 32 bits and turned into a float as a sum, as triggers do.
float frameTime(const ADSRState& state, std::uint32_t k) {
    return static_cast<float>(state.time + k);
}

void applyHeld(const ADSRCurve& curve, const ADSRState& state, float* samples,
               std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k)
        samples[k] *= curve.heldLevel(frameTime(state, k), state.previousLevel);
}

bool applyRelease(const ADSRCurve& curve, const ADSRState& state, float* samples,
                  std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float t = frameTime(state, k);
        if (curve.releaseOver(t)) {
            std::fill(samples + k, samples + frames, 0.f);
            return true;
        }
        samples[k] *= curve.releaseLevel(t, state.previousLevel);
    }
    return false;
}

}  // namespace

bool applyEnvelope(const ADSRCurve& curve, const ADSRState& state, float* samples,
                   std::uint32_t frames) noexcept {
    if (state.triggered == kADSRReleasing)
        return applyRelease(curve, state, samples, frames);
    applyHeld(curve, state, samples, frames);
    return false;
}
