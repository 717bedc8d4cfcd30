#include "PlainEnvelope.h"

void PlainEnvelope::trigger() {
    if (triggered == 2) {
        const float release = releaseTime * 44100.f;
        const auto t = static_cast<float>(time);
        previousLevel =
            release > 0.f && t / release < 1.f ? (1.f - t / release) * previousLevel : 0.f;
    }
    time = 0;
    triggered = 1;
}

void PlainEnvelope::untrigger() {
    if (triggered == 1) {
        const float attack = attackTime * 44100.f;
        const float decay = decayTime * 44100.f;
        const auto t = static_cast<float>(time);
        if (t < attack) {
            previousLevel = t / attack;
        } else {
            float y = decay > 0.f ? (t - attack) / decay : 1.f;
            if (y > 1.f)
                y = 1.f;
            previousLevel = (1.f - y) + sustainLevel * y;
        }
    }
    time = 0;
    triggered = 2;
}

bool PlainEnvelope::render(float* samples, std::uint32_t frames) {
    const float attack = attackTime * 44100.f;
    const float decay = decayTime * 44100.f;
    const float release = releaseTime * 44100.f;
    bool finished = false;
    for (std::uint32_t k = 0; k < frames; ++k) {
        if (finished || triggered == 0) {
            samples[k] = 0.f;
            continue;
        }
        const auto t = static_cast<float>(time + k);
        float level = 0.f;
        if (triggered == 1 && t < attack) {
            const float x = t / attack;
            level = x + (1.f - x) * previousLevel;
        } else if (triggered == 1) {
            float y = decay > 0.f ? (t - attack) / decay : 1.f;
            if (y > 1.f)
                y = 1.f;
            level = (1.f - y) + sustainLevel * y;
        } else if (release > 0.f) {
            const float x = t / release;
            if (x > 1.f) {
                finished = true;
                samples[k] = 0.f;
                continue;
            }
            level = (1.f - x) * previousLevel;
        }
        samples[k] *= level;
    }
    if (triggered != 0)
        time += frames;
    if (finished) {
        triggered = 0;
        previousLevel = 0.f;
    }
    return finished;
}
