#pragma once

#include "VornSequenceScrubberPlayHead.h"
#include "VornSequenceScrubberUpdate.h"
#include "handoff/AtomicTransfer.h"
#include "handoff/RenderReach.h"
#include "handoff/Shared.h"

/// What a scrubber shares with its render.
struct VornSequenceScrubberData {
    const WaveWindow* list = nullptr;                    // [render] played from
    VornSequenceScrubberPlayHead heads[2];               // [render]
    VornSequenceScrubberPlayHead next;                   // [render] active: waits to be played
    AtomicTransfer<VornSequenceScrubberUpdate> pending;  // from main to render
    Shared<float> fadeRate = 16.f;  // fades in a second: a step is a 44100th of it
    Shared<float> gain = 0.5f;
    WaveWindowList ownedList;  // [main] of the present sound
    RenderReach reach;
};
