#pragma once

#include <cstdint>

/// A grain voice in its plainest form: one loop, one frame a turn. Draws from the C library's
/// random().
struct PlainGrains {
    const float* samples = nullptr;
    std::uint32_t count = 0;

    float frequency = 440.f;
    float head[2] = {0.f, 0.f};
    float clock = 0.f;
    float fmFrequency = 0.f;
    float grainSize = 0.5f;
    float grainSpeed = 1.f;
    float preamp = 1.f;
    float gain = 1.f;
    float smoothedGain = 1.f;
    std::uint32_t current = 0;
    bool triggered = false;
    bool retrigger = false;
    bool syncSpeed = false;
    bool stopOnUntrigger = false;
    int grainMode = 1;
    bool reversed = false;

    void trigger();
    void untrigger();
    void render(float* out, std::uint32_t frames);

  private:
    float read(float position) const;
    void newGrain(float length, float grain, float ratio, float& speed);
};
