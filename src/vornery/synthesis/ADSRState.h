#pragma once

#include <cstdint>

class VoiceLock;

/// Stages of an envelope, as ADSRState::triggered holds them.
enum ADSRStage : std::int32_t { kADSRIdle = 0, kADSRHeld = 1, kADSRReleasing = 2 };

/// Where an envelope stands; copied as a whole.
struct ADSRState {
    VoiceLock* lock = nullptr;           // the unit's own; not owned, so that records can be copied
    std::uint32_t time = 4294967295u;    // frames since the last trigger or untrigger
    std::int32_t triggered = kADSRIdle;  // an ADSRStage; held is attack, decay and sustain
    float previousLevel = 0.f;           // where the current ramp starts
    double when = 0.0;                   // of the last trigger, seconds since 2001-01-01 UTC
};
