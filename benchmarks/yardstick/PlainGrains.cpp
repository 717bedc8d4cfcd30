#include "PlainGrains.h"

#include <cmath>
#include <cstdlib>

void PlainGrains::trigger() {
    if (triggered)
        retrigger = true;
    else
        reversed = false;
    triggered = true;
}

void PlainGrains::untrigger() {
    if (stopOnUntrigger)
        triggered = false;
    head[0] = head[1] = clock = 0.f;
}

inline float PlainGrains::read(float position) const {
    auto i = static_cast<std::uint32_t>(position);
    const float phi = position - static_cast<float>(i);
    if (i >= count)
        i -= count;
    if (phi <= 0.f)
        return samples[i];
    const std::uint32_t j = i + 1 == count ? 0 : i + 1;
    return samples[i] * (1.f - phi) + phi * samples[j];
}

void PlainGrains::newGrain(float length, float grain, float ratio, float& speed) {
    const std::uint32_t x = current;
    const std::uint32_t y = 1 - x;
    auto draw = [] { return static_cast<std::uint32_t>(random()); };
    auto rho = [&] { return static_cast<float>(draw()) * 4.656613e-10f - 0.5f; };
    if (grainMode == 0 || grainMode == 1 || grainMode == 2)
        head[x] = head[y] - grain * (1.f - speed);
    if (grainMode == 2 && (head[x] < 0.f || head[x] + grain >= length)) {
        reversed = !reversed;
        head[x] = head[y] - grain * (speed + 1.f);
        speed = -speed;
    }
    if (grainMode == 3)
        head[x] = static_cast<float>(draw() % count);
    if (grainMode == 4) {
        head[x] = head[y] - grain * (1.f - speed);
        head[x] += grain * rho();
    }
    if (grainMode == 5)
        head[x] = head[y] + speed * (length * rho()) * 0.25f;
    if (grainMode == 6)
        head[x] = head[x] + ratio * (grain * (speed - 1.f) * static_cast<float>(x + 1));
    if (retrigger) {
        retrigger = false;
        reversed = false;
        head[x] = 0.f;
    }
    current = y;
    clock -= grain;
}

void PlainGrains::render(float* out, std::uint32_t frames) {
    if (!triggered) {
        for (std::uint32_t k = 0; k < frames; ++k)
            out[k] = 0.f;
        smoothedGain = gain;
        return;
    }
    float speed = grainSpeed;
    if (syncSpeed)
        speed = grainSpeed * (440.f / frequency);
    if (grainMode == 0)
        speed = 0.f;
    if (reversed)
        speed = -speed;
    const float grain = grainSize * 5000.f + (1.f - grainSize) * 250.f;
    const float ratio = frequency / 440.f;
    const auto length = static_cast<float>(count);
    const auto w = static_cast<float>(double{fmFrequency} * 2 * M_PI * 1000 / 44100);
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float a = read(head[current]);
        const float b = read(head[1 - current]);
        clock += ratio;
        float t = clock / grain;
        if (t > 1.f) {
            newGrain(length, grain, ratio, speed);
            t = 1.f;
        }
        const float cube = t * t * t;
        out[k] = (b * cube + a * (1.f - cube)) * preamp * smoothedGain;
        smoothedGain = smoothedGain * 0.5f + gain * 0.5f;
        float step = ratio;
        if (fmFrequency > 0.f)
            step = ratio * (std::sin(w * static_cast<float>(k)) * 0.25f + 1.f);
        for (float& position : head) {
            position += step;
            while (position >= length)
                position -= length;
            while (position < 0.f)
                position += length;
        }
    }
}
