#include "PlainOutput.h"

#include <cmath>

void plainMix(float* sum, const float* addend, std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k)
        sum[k] += addend[k];
}

void PlainConverter::render(const float* samples, std::int16_t* out, std::uint32_t frames) {
    clippiness *= 0.9f;
    float peak = 0.f;
    for (std::uint32_t k = 0; k < frames; ++k)
        if (std::fabs(samples[k]) > peak)
            peak = std::fabs(samples[k]);
    float from = 1.f;
    float to = 1.f;
    if (autoGainControl > 0.f) {
        from = internalGainLevel;
        if (peak > autoGainControl)
            to = internalGainLevel = autoGainControl / peak;
        else if (peak < autoGainControl)
            to = internalGainLevel = from * 0.999f + 0.001f;
    }
    const float start = from * 32768.f;
    const float step = (to * 32768.f - start) / static_cast<float>(frames);
    bool clipped = false;
    for (std::uint32_t k = 0; k < frames; ++k) {
        float value = samples[k] * (start + static_cast<float>(k) * step);
        if (value > 32767.f) {
            value = 32767.f;
            clipped = true;
        } else if (value < -32767.f) {
            value = -32767.f;
            clipped = true;
        }
        out[k] = static_cast<std::int16_t>(value);
    }
    if (clipped) {
        clippiness = 1.f;
        ++notices;
    }
}
