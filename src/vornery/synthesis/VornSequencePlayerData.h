#pragma once

#include <atomic>
#include <cstdint>

#include "VornSequencePlayerPointers.h"
#include "handoff/AtomicTransfer.h"
#include "handoff/RenderReach.h"
#include "handoff/Shared.h"

/// What a sequence player shares with its render.
struct VornSequencePlayerData {
    VornSequencePlayerPointers current;                  // [render]
    AtomicTransfer<VornSequencePlayerPointers> pending;  // from main to render
    Shared<bool> playing = false;                        // the render clears it at the end
    Shared<bool> looping = false;
    bool convert = false;           // output in 16-bit integers, not floats
    Shared<float> peakRight = 0.f;  // greatest values, not magnitudes, of the last buffer
    Shared<float> peakLeft = 0.f;
    Shared<float> gain = 1.f;
    Shared<std::uint32_t> requestedPosition = 0;  // frames, as it was set last
    Shared<std::uint32_t> reportedPosition = 0;   // frames, after the last buffer
    // Of `pending`, as of the last buffer. Who sees it sees the position that goes with it.
    std::atomic<std::uint32_t> reportedReadCount{0};
    RenderReach reach;
};
