#include "ADSRLoop.h"

#include <algorithm>

namespace {

// Frame counts below this are exact as floats, so that corners have a closed form. Six minutes.
constexpr std::uint32_t kExactFrames = 1u << 24;

// Frames are counted in 32 bits and turned into a float as a sum, as triggers do.
float frameTime(std::uint32_t time, std::uint32_t k) {
    return static_cast<float>(time + k);
}

// How many whole frames lie below `stretch`, at most kExactFrames.
std::uint32_t framesBelow(float stretch) {
    if (!(stretch > 0.f))
        return 0;
    if (stretch >= static_cast<float>(kExactFrames))
        return kExactFrames;
    const auto whole = static_cast<std::uint32_t>(stretch);
    return whole + (static_cast<float>(whole) < stretch ? 1 : 0);
}

// The same with a frame on the end itself, where a quotient is still not more than 1.
std::uint32_t framesUpTo(float stretch) {
    const std::uint32_t below = framesBelow(stretch);
    return below + (static_cast<float>(below) == stretch ? 1 : 0);
}

// How many of the next frames lie before `end`.
std::uint32_t framesUntil(std::uint32_t end, std::uint32_t time, std::uint32_t frames) {
    return time < end ? std::min(end - time, frames) : 0;
}

void attack(const ADSRCurve& curve, std::int32_t time, float previous, float* samples,
            std::uint32_t frames) {
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t k = 0; k < count; ++k) {
        const float x = static_cast<float>(time + k) / curve.attack;
        samples[k] *= x + (1.f - x) * previous;
    }
}

void decay(const ADSRCurve& curve, std::int32_t time, float* samples, std::uint32_t frames) {
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t k = 0; k < count; ++k) {
        float y = (static_cast<float>(time + k) - curve.attack) / curve.decay;
        y = y > 1.f ? 1.f : y;
        samples[k] *= (1.f - y) + curve.sustain * y;
    }
}

void sustain(const ADSRCurve& curve, float* samples, std::uint32_t frames) {
    if (curve.sustain == 1.f)
        return;
    const float level = 0.f + curve.sustain;  // as the decay ends, a zero included
    for (std::uint32_t k = 0; k < frames; ++k)
        samples[k] *= level;
}

void release(const ADSRCurve& curve, std::int32_t time, float previous, float* samples,
             std::uint32_t frames) {
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t k = 0; k < count; ++k)
        samples[k] *= (1.f - static_cast<float>(time + k) / curve.release) * previous;
}

bool sustained(const ADSRCurve& curve, float t) {
    return !(t < curve.attack) && (!(curve.decay > 0.f) || (t - curve.attack) / curve.decay >= 1.f);
}

void applyHeld(const ADSRCurve& curve, const ADSRState& state, float* samples,
               std::uint32_t frames) {
    const std::uint32_t time = state.time;
    const bool exact = time < kExactFrames && frames < kExactFrames - time;
    const bool wraps = frames > ~time;
    if (sustained(curve, frameTime(time, 0)) && !wraps) {
        sustain(curve, samples, frames);
    } else if (exact) {
        const std::uint32_t rising = framesUntil(framesBelow(curve.attack), time, frames);
        attack(curve, static_cast<std::int32_t>(time), state.previousLevel, samples, rising);
        if (curve.decay > 0.f)
            decay(curve, static_cast<std::int32_t>(time + rising), samples + rising,
                  frames - rising);
        else
            sustain(curve, samples + rising, frames - rising);
    } else {
        for (std::uint32_t k = 0; k < frames; ++k)
            samples[k] *= curve.heldLevel(frameTime(time, k), state.previousLevel);
    }
}

// A release that never ends is silent from its first frame.
bool applyRelease(const ADSRCurve& curve, const ADSRState& state, float* samples,
                  std::uint32_t frames) {
    const std::uint32_t time = state.time;
    if (!(curve.release > 0.f)) {
        for (std::uint32_t k = 0; k < frames; ++k)
            samples[k] *= 0.f;
        return false;
    }
    std::uint32_t falling = 0;
    if (time < kExactFrames && frames < kExactFrames - time) {
        falling = framesUntil(framesUpTo(curve.release), time, frames);
        release(curve, static_cast<std::int32_t>(time), state.previousLevel, samples, falling);
    } else {
        for (; falling < frames && !curve.releaseOver(frameTime(time, falling)); ++falling)
            samples[falling] *= curve.releaseLevel(frameTime(time, falling), state.previousLevel);
    }
    std::fill(samples + falling, samples + frames, 0.f);
    return falling < frames;
}

}  // namespace

bool applyEnvelope(const ADSRCurve& curve, const ADSRState& state, float* samples,
                   std::uint32_t frames) noexcept {
    if (state.triggered == kADSRReleasing)
        return applyRelease(curve, state, samples, frames);
    applyHeld(curve, state, samples, frames);
    return false;
}
