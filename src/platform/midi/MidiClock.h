#pragma once

#include <chrono>

#include "midi/MidiTypes.h"

/// The time that is stamped on what comes in now. [any thread]; no system call.
inline MIDITimeStamp midiNow() noexcept {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<MIDITimeStamp>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
}
