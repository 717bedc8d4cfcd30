#pragma once

#include <cstdint>

#include "WindowPlace.h"
#include "handoff/Shared.h"

/// A place in a sound that is played while it fades in or out.
struct VornSequenceScrubberPlayHead {
    const WaveWindow* window = nullptr;
    std::uint32_t offset = 0;     // frames into the window
    float fadeLevel = 0.f;        // of the next sample, 0 to 1
    float fadeStep = 0.f;         // per sample: above 0 fading in, below 0 fading out
    Shared<bool> active = false;  // written by the render

    WindowPlace place() const { return {window, offset}; }
    void moveTo(const WindowPlace& place) {
        window = place.window;
        offset = place.offset;
    }
};
