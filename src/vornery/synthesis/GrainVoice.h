#pragma once

#include <cmath>
#include <cstdint>

#include "SteadySum.h"

struct GrainNoteData;

/// The sound that a grain voice reads: `count` samples, at least one, finite.
struct GrainSound {
    const float* samples;
    std::uint32_t count;
};

inline float finiteOrZero(float value) {
    return std::isfinite(value) ? value : 0.f;
}

/// A head brought into [0, length] by whole lengths. One subtraction or addition at a time is what
/// is wanted, bit for bit; below 2^24 every such step but the last addition is exact, so the
/// remainder gives the same at once, and beyond it a sum that no longer moves cannot hang the
/// voice.
inline float wrapped(float head, float length) {
    if (head >= 0.f && head < length)
        return head;
    if (head >= length)
        head -= length;
    if (head >= length || head <= -length)
        head = std::fmod(head, length) + 0.f;  // -0 becomes 0, as the last addition makes it
    if (head < 0.f)
        head += length;
    return finiteOrZero(head);
}

/// A voice during a render: the render's constants, and the moving parts that are taken out of the
/// note record and put back at the end. [render]
struct GrainVoice {
    GrainVoice(const GrainNoteData& note, const GrainSound& sound) noexcept;
    void putBack(GrainNoteData& note) const noexcept;

    /// The sound between its samples; behind the last comes the first.
    float sampleAt(float position) const noexcept;
    /// Lets the fading head begin the next grain, which the other one fades from.
    void beginGrain(GrainNoteData& note) noexcept;

    const float* samples;
    std::uint32_t count;
    float length;       // `count` as a float; above 2^24 it may be a little more
    float lastSample;   // from here on a position may need the first sample
    float grain;        // grain length in clock units
    float frequency;    // Hz, the same throughout a render
    float ratio;        // pitch: step of the clock, and of the heads without modulation
    SteadyStep steady;  // of the ratio
    float speed;        // grain speed with its direction
    float preamp;
    float gain;
    float wobbleStep;  // of the modulation's phase, radians a frame
    bool modulates;

    float head[2];
    float clock;
    float smoothedGain;
    std::uint32_t fading;  // which head

  private:
    void placeHead(GrainNoteData& note) noexcept;
};

inline float GrainVoice::sampleAt(float position) const noexcept {
    auto index = static_cast<std::uint32_t>(position);
    const float fraction = position - static_cast<float>(index);
    if (index >= count)
        index -= count;  // rounding has put the head on the end itself, which is the start
    if (!(fraction > 0.f))
        return samples[index];
    const std::uint32_t next = index + 1 == count ? 0 : index + 1;
    return samples[index] * (1.f - fraction) + fraction * samples[next];
}
