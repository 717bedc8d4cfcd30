#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Data bytes behind a status byte. Those of an exclusive message have no fixed number: one is
/// counted, and the others are met as data bytes without a status.
constexpr std::size_t midiDataBytes(std::uint8_t status) {
    switch (status >> 4) {
        case 12:  // program change
        case 13:  // channel pressure
            return 1;
        case 15:
            return status == 0xF2 ? 2 : status == 0xF0 || status == 0xF1 || status == 0xF3 ? 1 : 0;
        default:
            return status < 0x80 ? 0 : 2;
    }
}

/// One note-on or note-off among a packet's bytes.
struct MidiNoteEvent {
    bool down;
    std::uint8_t note;
    std::uint8_t velocity;
};

/// Calls `what` for every note-on and note-off. A note-on with velocity 0 is a note-off, and a
/// note-off may lack its velocity at the end. [any thread]
template <typename What>
void forEachMidiNote(std::span<const std::uint8_t> bytes, What what) {
    for (std::size_t at = 0; at < bytes.size(); at += 1 + midiDataBytes(bytes[at])) {
        const int message = bytes[at] >> 4;
        const std::size_t data = bytes.size() - at - 1;
        const std::uint8_t velocity = data >= 2 ? bytes[at + 2] : std::uint8_t{0};
        if (message == 9 && data >= 2)
            what(MidiNoteEvent{velocity != 0, bytes[at + 1], velocity});
        else if (message == 8 && data >= 1)
            what(MidiNoteEvent{false, bytes[at + 1], velocity});
    }
}
