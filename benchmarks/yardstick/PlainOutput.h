#pragma once

#include <cstdint>

/// Adds `frames` samples to a sum.
void plainMix(float* sum, const float* addend, std::uint32_t frames);

/// The output stage in its plainest form.
struct PlainConverter {
    float autoGainControl = 0.f, clippiness = 0.f, internalGainLevel = 1.f;
    int notices = 0;
    void render(const float* samples, std::int16_t* out, std::uint32_t frames);
};
