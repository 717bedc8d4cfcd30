#pragma once

/// Shape of an envelope; copied as a whole.
struct ADSRSettings {
    float attackTime = 0.f;    // seconds
    float decayTime = 0.f;     // seconds
    float sustainLevel = 1.f;  // 0 to 1
    float releaseTime = 0.f;   // seconds; 0 or less is silent at once and never ends

    bool operator==(const ADSRSettings&) const = default;
};
