#include "PlainEffects.h"

#include <cmath>

void PlainRingModulator::render(float* samples, std::uint32_t frames) {
    const auto w = static_cast<float>(double{frequency / 44100.f} * (2 * M_PI));
    float p = offset;
    for (std::uint32_t k = 0; k < frames; ++k) {
        samples[k] *= (1.f - depth) + depth * std::sin(p);
        p += w;
        while (double{p} > 2 * M_PI)
            p = static_cast<float>(double{p} - 2 * M_PI);
    }
    offset = p;
}

void PlainLowPass::render(float* samples, std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k) {
        y = y + filterAlpha * (samples[k] - y);
        samples[k] = y;
    }
}

void PlainOverdrive::render(float* samples, std::uint32_t frames) {
    const float e = 1.f - strength;
    if (!(e < 1.f))
        return;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float x = samples[k];
        samples[k] = x >= 0.f ? std::pow(x, e) : -std::pow(-x, e);
    }
}

void PlainDelayLine::setDelay(float seconds) {
    const auto frames = static_cast<std::uint32_t>(seconds * 44100.f);
    if (frames > length) {
        buffer.resize(length);
        buffer.resize(frames, 0.f);
    }
    length = frames;
    if (position >= length)
        position = 0;
}

void PlainEcho::render(float* samples, std::uint32_t frames) {
    if (line.length == 0)
        return;
    float* buffer = line.buffer.data();
    std::uint32_t position = line.position;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float v = samples[k] + buffer[position];
        buffer[position] = v * feedback;
        samples[k] = v;
        position = (position + 1) % line.length;
    }
    line.position = position;
}

PlainResonance::PlainResonance() {
    line.buffer.assign(330, 0.f);
    line.length = 330;
}

void PlainResonance::render(float* samples, std::uint32_t frames) {
    if (line.length == 0)
        return;
    float* buffer = line.buffer.data();
    std::uint32_t position = line.position;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float v = samples[k] + buffer[position];
        state1 += resonance * (v - state1);
        state2 += cutoff * (v - state2);
        buffer[position] = -(feedback * state1);
        samples[k] = state2;
        position = (position + 1) % line.length;
    }
    line.position = position;
}
