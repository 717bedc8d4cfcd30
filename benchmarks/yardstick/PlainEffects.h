#pragma once

#include <cstdint>
#include <vector>

/// The effects in their plainest form, in place.

struct PlainRingModulator {
    float frequency = 440.f, depth = 0.f, offset = 0.f;
    void render(float* samples, std::uint32_t frames);
};

struct PlainLowPass {
    float filterAlpha = 0.f, y = 0.f;
    void render(float* samples, std::uint32_t frames);
};

struct PlainOverdrive {
    float strength = 0.f;
    void render(float* samples, std::uint32_t frames);
};

struct PlainDelayLine {
    std::vector<float> buffer;
    std::uint32_t position = 0;
    std::uint32_t length = 0;
    void setDelay(float seconds);
};

struct PlainEcho {
    PlainDelayLine line;
    float feedback = 0.f;
    void render(float* samples, std::uint32_t frames);
};

struct PlainResonance {
    PlainDelayLine line;
    float feedback = 0.95f, resonance = 0.f, cutoff = 1.f, state1 = 0.f, state2 = 0.f;
    PlainResonance();
    void render(float* samples, std::uint32_t frames);
};
