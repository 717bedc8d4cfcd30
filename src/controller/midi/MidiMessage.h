#pragma once

#include <cstdint>

#include "midi/MidiTypes.h"

/// One message on its way to the instrument.
struct MidiMessage {
    enum class Kind : std::uint8_t {
        down,        // note, velocity
        up,          // note, velocity
        aftertouch,  // note, pressure
        control,     // controller, value
        program,     // number
        bend,        // the lower seven bits, the upper seven
        flood,       // made by the queue: releases were lost, so that nothing is held
    };
    Kind kind = Kind::up;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    MIDIEndpointRef source = 0;
    std::uint8_t channel = 0;  // 0 to 15
};

// Controllers that mean the same on every device.
inline constexpr int kMidiModulation = 1;
inline constexpr int kMidiSustain = 64;
inline constexpr int kMidiSostenuto = 66;
inline constexpr int kMidiAllSoundOff = 120;
inline constexpr int kMidiResetControllers = 121;
inline constexpr int kMidiAllNotesOff = 123;  // and all above it

/// The pedals are switches: down from here on.
constexpr bool isPedalDown(std::uint8_t value) {
    return value >= 64;
}

constexpr bool isPedal(int controller) {
    return controller == kMidiSustain || controller == kMidiSostenuto;
}
