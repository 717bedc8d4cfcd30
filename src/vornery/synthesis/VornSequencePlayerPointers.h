#pragma once

#include <cstdint>

#include "WaveWindow.h"
#include "audiounits/StreamDescription.h"

/// Where a sequence player is in its sound.
struct VornSequencePlayerPointers {
    const WaveWindow* firstWindow = nullptr;    // the sound's window list; null for none
    const WaveWindow* currentWindow = nullptr;  // the one that is played
    std::uint32_t offset = 0;                   // frames played of it
    std::uint32_t position = 0;                 // frames since the sound's start
    StreamDescription description;              // the unit's output when this was made
};
