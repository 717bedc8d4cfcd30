#pragma once

#include <cstdint>

#include "ADSRSettings.h"
#include "ADSRState.h"

/// The arithmetic of an envelope: stretches in frames and the level at a time, single precision.
struct ADSRCurve {
    float attack, decay, sustain, release;  // frames, frames, level, frames

    explicit ADSRCurve(const ADSRSettings& settings)
        : attack(settings.attackTime * 44100.f),
          decay(settings.decayTime * 44100.f),
          sustain(settings.sustainLevel),
          release(settings.releaseTime * 44100.f) {}

    /// From 1 down to the sustain level, `t` >= attack.
    float decayLevel(float t) const {
        float y = decay > 0.f ? (t - attack) / decay : 1.f;
        if (y > 1.f)
            y = 1.f;
        return (1.f - y) + sustain * y;
    }
    /// Held: rises from `previous` to 1, then decays.
    float heldLevel(float t, float previous) const {
        if (t < attack) {
            const float x = t / attack;
            return x + (1.f - x) * previous;
        }
        return decayLevel(t);
    }
    /// What a held phase has reached when it is released: the attack counts from nothing.
    float levelAtUntrigger(float t) const { return t < attack ? t / attack : decayLevel(t); }
    /// What a release has come down to when it is cut short by a trigger.
    float levelAtTrigger(float t, float previous) const {
        return release > 0.f && t / release < 1.f ? (1.f - t / release) * previous : 0.f;
    }
    /// Whether a release that ends has passed its end at `t`.
    bool releaseOver(float t) const { return release > 0.f && t / release > 1.f; }
    float releaseLevel(float t, float previous) const {
        return release > 0.f ? (1.f - t / release) * previous : 0.f;
    }
};
