#pragma once

#include <cstdint>

#include "handoff/Shared.h"

class VoiceLock;

/// Where each new grain begins.
enum GrainMode : std::int32_t {
    kGrainStatic = 0,
    kGrainLinear = 1,
    kGrainBounce = 2,
    kGrainChaos = 3,
    kGrainDrunken = 4,
    kGrainScrambly = 5,
    kGrainSplitLinear = 6,
};

/// What a grain voice plays, shared between the thread that sets it and the render. Single fields
/// are read and written without the lock; trigger, untrigger, wave changes and renders hold it.
struct GrainNoteData {
    VoiceLock* lock = nullptr;          // the unit's own; not owned, so that records can be copied
    Shared<float> frequency = 440.f;    // Hz; 440 plays the sound at its recorded speed
    Shared<float> heads[3] = {};        // read positions of both heads in samples, grain clock
    Shared<float> fmFrequency = 0.f;    // kHz; 0 or less is no modulation
    Shared<float> grainSize = 0.5f;     // 0 to 1
    Shared<float> grainSpeed = 1.f;     // movement of a new grain's start, in grain lengths
    Shared<float> preamp = 1.f;         // output multiplier
    Shared<float> gain = 1.f;           // note gain wanted
    Shared<float> smoothedGain = 1.f;   // note gain applied, chasing `gain`
    Shared<std::uint32_t> current = 0;  // the head (0 or 1) that fades out in this grain
    Shared<bool> triggered = false;     // sounding
    Shared<bool> retrigger = false;     // begin again at the next grain
    Shared<bool> syncSpeed = false;     // scale grainSpeed by pitch
    Shared<std::int32_t> stopOnUntrigger = 0;  // non-zero: untrigger silences
    Shared<std::int32_t> grainMode =
        kGrainLinear;               // a GrainMode; others leave the head where it is
    Shared<bool> reversed = false;  // the grain sequence travels backwards
};
