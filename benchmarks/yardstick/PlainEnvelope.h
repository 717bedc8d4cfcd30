#pragma once

#include <cstdint>

/// An envelope in its plainest form.
struct PlainEnvelope {
    float attackTime = 0.f, decayTime = 0.f, sustainLevel = 1.f, releaseTime = 0.f;
    std::uint32_t time = 4294967295u;
    int triggered = 0;
    float previousLevel = 0.f;

    void trigger();
    void untrigger();
    /// Multiplies the samples; true when the release has ended, after which the stage is 0.
    bool render(float* samples, std::uint32_t frames);
};
