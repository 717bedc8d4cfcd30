#pragma once

#include <cstdint>

#include "WaveWindow.h"

/// A place to be played next. No list means silence, at once.
struct VornSequenceScrubberUpdate {
    const WaveWindow* list = nullptr;
    const WaveWindow* window = nullptr;  // of the list
    std::uint32_t offset = 0;            // frames into the window
};
